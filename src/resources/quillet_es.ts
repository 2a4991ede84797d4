<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>AppButton</name>
    <message>
        <source>Unkonwn</source>
        <translation>Desconocida</translation>
    </message>
</context>
<context>
    <name>Desktop</name>
    <message>
        <source>Link error</source>
        <translation>Error de enlace</translation>
    </message>
    <message>
        <source>This file is a recursive set of links</source>
        <translation>Este archivo es un conjunto recursivo de enlaces</translation>
    </message>
    <message>
        <source>Suspend session</source>
        <translation>Suspender la sesión</translation>
    </message>
    <message>
        <source>There are currently running applications. Do you want to suspend session keeping them running?</source>
        <translation>Hay aplicaciones en ejecución. ¿Desea suspender la sesión y dejarlas en marcha?</translation>
    </message>
    <message>
        <source>Server connection</source>
        <translation>Conexión con el servidor</translation>
    </message>
    <message>
        <source>The password you supplied is incorrect. Please, try again.</source>
        <translation>La contraseña no es correcta. Inténtelo de nuevo.</translation>
    </message>
    <message>
        <source>Cannot enable user. Contact your system administrator.</source>
        <translation>No se puede activar el usuario. Póngase en contacto con el administrador del sistema.</translation>
    </message>
    <message>
        <source>Cannot connect to Tidewell Server. Contact your system administrator.</source>
        <translation>No se puede conectar con Tidewell Server. Póngase en contacto con el administrador del sistema.</translation>
    </message>
    <message>
        <source>Cannot connect to Tidewell Server with current user token. Contact your system administrator.</source>
        <translation>No se puede conectar con Tidewell Server con la credencial guardada del usuario. Póngase en contacto con el administrador del sistema.</translation>
    </message>
</context>
<context>
    <name>FileSystemWidget</name>
    <message>
        <source>Up</source>
        <translation>Subir</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Cambiar nombre</translation>
    </message>
    <message>
        <source>New folder</source>
        <translation>Nueva carpeta</translation>
    </message>
    <message>
        <source>Cut</source>
        <translation>Cortar</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Copiar</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Pegar</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Eliminar</translation>
    </message>
    <message>
        <source>List view</source>
        <translation>Vista de lista</translation>
    </message>
    <message>
        <source>Icon view</source>
        <translation>Vista de iconos</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Carpeta</translation>
    </message>
    <message>
        <source>Places</source>
        <translation>Lugares</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Archivos</translation>
    </message>
    <message>
        <source>Loading folder %1...</source>
        <translation>Cargando la carpeta %1...</translation>
    </message>
    <message>
        <source>Finished loading folder %1</source>
        <translation>Carpeta %1 cargada</translation>
    </message>
    <message>
        <source>&amp;Rename</source>
        <translation>Cambiar &amp;nombre</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>Cor&amp;tar</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Copiar</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Eliminar</translation>
    </message>
    <message>
        <source>&amp;New folder</source>
        <translation>&amp;Nueva carpeta</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Pegar</translation>
    </message>
    <message>
        <source>Cannot paste</source>
        <translation>No se puede pegar</translation>
    </message>
    <message>
        <source>The target you have selected currently exists.</source>
        <translation>El destino que ha seleccionado ya existe.</translation>
    </message>
    <message>
        <source>Copying</source>
        <translation>Copiando</translation>
    </message>
    <message>
        <source>Cannot paste file</source>
        <translation>No se puede pegar el archivo</translation>
    </message>
    <message>
        <source>Something went wrong when pasting file. Please, contact system administrator</source>
        <translation>Se ha producido un error al pegar el archivo. Póngase en contacto con el administrador del sistema</translation>
    </message>
    <message>
        <source>Remove folder</source>
        <translation>Eliminar carpeta</translation>
    </message>
    <message>
        <source>Remove file</source>
        <translation>Eliminar archivo</translation>
    </message>
    <message>
        <source>This folder is to be removed with all its contents. This operation cannot be undone. Are you sure you want to remove this folder?</source>
        <translation>Se va a eliminar esta carpeta con todo su contenido. Esta operación no se puede deshacer. ¿Seguro que desea eliminar la carpeta?</translation>
    </message>
    <message>
        <source>This file is to be removed. This operation cannot be undone. Are you sure you want to remove this file?</source>
        <translation>Se va a eliminar este archivo. Esta operación no se puede deshacer. ¿Seguro que desea eliminar el archivo?</translation>
    </message>
    <message>
        <source>Removing</source>
        <translation>Eliminando</translation>
    </message>
    <message>
        <source>Please, enter new folder name</source>
        <translation>Escriba el nombre de la nueva carpeta</translation>
    </message>
    <message>
        <source>Please, enter new file name</source>
        <translation>Escriba el nuevo nombre del archivo</translation>
    </message>
    <message>
        <source>Cannot rename folder</source>
        <translation>No se puede cambiar el nombre de la carpeta</translation>
    </message>
    <message>
        <source>The folder name you have selected currently exists. Please, select a different folder name</source>
        <translation>Ya existe una carpeta con ese nombre. Elija un nombre diferente</translation>
    </message>
    <message>
        <source>Cannot rename file</source>
        <translation>No se puede cambiar el nombre del archivo</translation>
    </message>
    <message>
        <source>The file name you have selected currently exists. Please, select a different file name</source>
        <translation>Ya existe un archivo con ese nombre. Elija un nombre diferente</translation>
    </message>
    <message>
        <source>Cannot create folder</source>
        <translation>No se puede crear la carpeta</translation>
    </message>
    <message>
        <source>LOCAL &gt; </source>
        <translation>LOCAL &gt; </translation>
    </message>
    <message>
        <source>Dropbox</source>
        <translation>Dropbox</translation>
    </message>
    <message>
        <source>Google Drive</source>
        <translation>Google Drive</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Cancelling...</source>
        <translation>Cancelando...</translation>
    </message>
    <message>
        <source>%1 of %2: %3</source>
        <translation>%1 de %2: %3</translation>
    </message>
</context>
<context>
    <name>InitScreen</name>
    <message>
        <source>Dialog</source>
        <translation>Diálogo</translation>
    </message>
    <message>
        <source>Empty password</source>
        <translation>Contraseña vacía</translation>
    </message>
    <message>
        <source>The password must not be empty</source>
        <translation>La contraseña no puede estar vacía</translation>
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
        <translation>Español</translation>
    </message>
</context>
<context>
    <name>MimeConfig</name>
    <message>
        <source>File
associations</source>
        <translation>Asociación
de archivos</translation>
    </message>
    <message>
        <source>&lt;No group&gt;</source>
        <translation>&lt;Sin grupo&gt;</translation>
    </message>
    <message>
        <source>Modified configuration</source>
        <translation>Configuración modificada</translation>
    </message>
    <message>
        <source>Are you sure you want to change applications configuration?</source>
        <translation>¿Seguro que desea cambiar la configuración de las aplicaciones?</translation>
    </message>
    <message>
        <source>Go back</source>
        <translation>Volver</translation>
    </message>
    <message>
        <source>Group</source>
        <translation>Grupo</translation>
    </message>
    <message>
        <source>Applications of the group</source>
        <translation>Aplicaciones del grupo</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Añadir</translation>
    </message>
    <message>
        <source>Extension</source>
        <translation>Extensión</translation>
    </message>
    <message>
        <source>Applications that open the extension</source>
        <translation>Aplicaciones que abren la extensión</translation>
    </message>
    <message>
        <source>Move up</source>
        <translation>Subir</translation>
    </message>
    <message>
        <source>Move down</source>
        <translation>Bajar</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Quitar</translation>
    </message>
    <message>
        <source>Accept</source>
        <translation>Aceptar</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
</context>
<context>
    <name>TabBar</name>
    <message>
        <source>Task bar</source>
        <translation>Barra de tareas</translation>
    </message>
    <message>
        <source>Earlier tasks</source>
        <translation>Tareas anteriores</translation>
    </message>
    <message>
        <source>Later tasks</source>
        <translation>Tareas siguientes</translation>
    </message>
    <message>
        <source>Tidewell</source>
        <translation>Tidewell</translation>
    </message>
    <message>
        <source>Desktop</source>
        <translation>Escritorio</translation>
    </message>
    <message>
        <source>Places</source>
        <translation>Lugares</translation>
    </message>
    <message>
        <source>Configuration</source>
        <translation>Configuración</translation>
    </message>
    <message>
        <source>Log off</source>
        <translation>Cerrar sesión</translation>
    </message>
</context>
<context>
    <name>ThreadManager</name>
    <message>
        <source>The session is being suspended. Please, wait.</source>
        <translation>La sesión se está suspendiendo. Espere, por favor.</translation>
    </message>
</context>
<context>
    <name>ThreadWidget</name>
    <message>
        <source>Close</source>
        <translation>Cerrar</translation>
    </message>
    <message>
        <source>Terminate</source>
        <translation>Terminar</translation>
    </message>
    <message>
        <source>Terminate application</source>
        <translation>Terminar la aplicación</translation>
    </message>
    <message>
        <source>You are going to terminate the application.
All unsaved data will be lost.
Are you sure you want to do this?</source>
        <translation>Va a terminar la aplicación.
Se perderán todos los datos que no haya guardado.
¿Seguro que desea hacerlo?</translation>
    </message>
    <message>
        <source>Terminating application</source>
        <translation>Terminando la aplicación</translation>
    </message>
    <message>
        <source>Running</source>
        <translation>En ejecución</translation>
    </message>
</context>
<context>
    <name>UserConfig</name>
    <message>
        <source>Go back</source>
        <translation>Volver</translation>
    </message>
    <message>
        <source>User name:</source>
        <translation>Nombre de usuario:</translation>
    </message>
    <message>
        <source>Actual password:</source>
        <translation>Contraseña actual:</translation>
    </message>
    <message>
        <source>New password:</source>
        <translation>Contraseña nueva:</translation>
    </message>
    <message>
        <source>Repeat password:</source>
        <translation>Repita la contraseña:</translation>
    </message>
    <message>
        <source>Accept</source>
        <translation>Aceptar</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>User
Configuration</source>
        <translation>Cambiar
contraseña</translation>
    </message>
    <message>
        <source>Incorrect password</source>
        <translation>Contraseña incorrecta</translation>
    </message>
    <message>
        <source>The new password must not be empty</source>
        <translation>La contraseña nueva no puede estar vacía</translation>
    </message>
    <message>
        <source>Password mismatch</source>
        <translation>Las contraseñas no coinciden</translation>
    </message>
    <message>
        <source>The repeat password must be equal to the new password</source>
        <translation>La contraseña repetida debe ser igual a la nueva</translation>
    </message>
    <message>
        <source>The old password must not be empty</source>
        <translation>La contraseña actual no puede estar vacía</translation>
    </message>
    <message>
        <source>Cannot change password</source>
        <translation>No se puede cambiar la contraseña</translation>
    </message>
    <message>
        <source>Not enough permissions to change password</source>
        <translation>No tiene permisos suficientes para cambiar la contraseña</translation>
    </message>
    <message>
        <source>The old password you provided is invalid</source>
        <translation>La contraseña actual que ha escrito no es válida</translation>
    </message>
    <message>
        <source>The password you provided is too short or has been used previously</source>
        <translation>La contraseña que ha escrito es demasiado corta o ya se ha usado antes</translation>
    </message>
    <message>
        <source>There was a problem trying to change password. Contact the administrator</source>
        <translation>Se ha producido un problema al cambiar la contraseña. Póngase en contacto con el administrador</translation>
    </message>
    <message>
        <source>Password change succesful</source>
        <translation>Contraseña cambiada</translation>
    </message>
    <message>
        <source>The password has been changed.</source>
        <translation>La contraseña se ha cambiado.</translation>
    </message>
</context>
</TS>
