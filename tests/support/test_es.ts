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
</context>
</TS>
