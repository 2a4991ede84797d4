<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es">
<context>
    <name>Desktop</name>
    <message>
        <source>Suspend session</source>
        <translation>Suspender sesión</translation>
    </message>
    <message>
        <source>Server connection</source>
        <translation>Conexión con el servidor</translation>
    </message>
    <message>
        <source>Cannot connect to Tidewell Server. Contact your system administrator.</source>
        <translation>Sin servidor</translation>
    </message>
    <message>
        <source>Cannot connect to Tidewell Server with current user token. Contact your system administrator.</source>
        <translation>Token rechazado</translation>
    </message>
    <message>
        <source>The password you supplied is incorrect. Please, try again.</source>
        <translation>Contraseña incorrecta</translation>
    </message>
    <message>
        <source>Cannot enable user. Contact your system administrator.</source>
        <translation>Usuario no activado</translation>
    </message>
</context>
<context>
    <name>InitScreen</name>
    <message>
        <source>Dialog</source>
        <translation>Diálogo</translation>
    </message>
    <message>
        <source>Welcome to Tidewell Desktop</source>
        <translation>Bienvenido a Tidewell Desktop</translation>
    </message>
    <message>
        <source>Select language</source>
        <translation>Seleccione el idioma</translation>
    </message>
    <message>
        <source>Confirm your password</source>
        <translation>Confirme su contraseña</translation>
    </message>
    <message>
        <source>English</source>
        <translation>Inglés</translation>
    </message>
    <message>
        <source>Español</source>
        <translation>Español (ES)</translation>
    </message>
    <message>
        <source>Empty password</source>
        <translation>Contraseña vacía</translation>
    </message>
    <message>
        <source>The password must not be empty</source>
        <translation>La contraseña no puede estar vacía</translation>
    </message>
</context>
</TS>
