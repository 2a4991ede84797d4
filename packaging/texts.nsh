; What the installer says, in both languages.

!macro TEXT NAME ENGLISH SPANISH
    LangString ${NAME} ${LANG_ENGLISH} "${ENGLISH}"
    LangString ${NAME} ${LANG_SPANISH} "${SPANISH}"
!macroend

!insertmacro TEXT running \
    "Quillet is running in a session of this machine. Have its users log off, and try again." \
    "Quillet se está ejecutando en una sesión de este equipo. Pida a sus usuarios que cierren la sesión e inténtelo de nuevo."
!insertmacro TEXT notAlone \
    "Another installation or removal of Quillet is under way. Wait until it has ended, and try again." \
    "Hay otra instalación o eliminación de Quillet en curso. Espere a que termine e inténtelo de nuevo."
!insertmacro TEXT noRights \
    "Only an administrator of this machine can do this." \
    "Solo un administrador de este equipo puede hacer esto."
!insertmacro TEXT badFolder \
    "Quillet needs a folder on a drive, such as C:\Quillet, without quotation marks or slashes. Nothing was changed." \
    "Quillet necesita una carpeta en una unidad, como C:\Quillet, sin comillas ni barras (/). No se ha cambiado nada."
!insertmacro TEXT notOurs \
    "Another program is in the folder for Quillet. Nothing was changed." \
    "En la carpeta de Quillet hay otro programa. No se ha cambiado nada."
!insertmacro TEXT notHere \
    "Quillet is not in this folder. Nothing was changed." \
    "Quillet no está en esta carpeta. No se ha cambiado nada."
!insertmacro TEXT noRoom \
    "There is not enough room on this disk for Quillet. Nothing was changed." \
    "No hay espacio suficiente en este disco para Quillet. No se ha cambiado nada."
!insertmacro TEXT cannotWrite \
    "The folder for Quillet or the temporary folder cannot be written, or is full. Nothing was changed." \
    "No se puede escribir en la carpeta de Quillet o en la temporal, o están llenas. No se ha cambiado nada."
!insertmacro TEXT oldStays \
    "The installed version of Quillet could not be removed." \
    "No se ha podido quitar la versión instalada de Quillet."
!insertmacro TEXT notRemoved \
    "Not all of Quillet could be removed. Close what uses its files, and remove it again." \
    "No se ha podido quitar Quillet por completo. Cierre lo que use sus archivos y vuelva a quitarlo."
!insertmacro TEXT notComplete \
    "Quillet is not installed completely. Clear what is in the way, and run this program again." \
    "Quillet no se ha instalado por completo. Resuelva el problema y vuelva a ejecutar este programa."
!insertmacro TEXT incompleteName "Quillet (not installed completely)" "Quillet (instalación incompleta)"
!insertmacro TEXT shellRefused \
    "The shell of this machine could not be changed." \
    "No se ha podido cambiar el shell de este equipo."
!insertmacro TEXT programName "Quillet" "Quillet"
!insertmacro TEXT programText \
    "The program, its libraries and a settings file if there is none." \
    "El programa, sus bibliotecas y un archivo de configuración si no hay ninguno."
!insertmacro TEXT shellName "Shell of this machine" "Shell de este equipo"
!insertmacro TEXT shellText \
    "Starts Quillet at log-on instead of the present shell. Removing Quillet puts that back." \
    "Inicia Quillet al iniciar la sesión en lugar del shell actual, que vuelve al quitar Quillet."
