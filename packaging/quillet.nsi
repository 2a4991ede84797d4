; The installer: Quillet for everybody on this machine. Built by tools/package, which defines
;
;   VERSION      as the program says it
;   VERSION4     the same with four numbers
;   STAGE        the folder with what is installed
;   FILES        a script that installs every file of STAGE, and
;   REMOVAL      one that removes these files and folders and no others
;   SIZE         what they take, in KiB
;   OUTPUT       the installer
;
; Switches of the installer: /S silent, /SHELL=1 makes Quillet the machine's shell, /D=FOLDER (the last one,
; without quotes). Of the uninstaller: /S silent, _?=FOLDER (the last one, without quotes): it waits until all is
; done, and stays there itself. Exit codes: 0 done, 1 given up by the user, 2 failed, 5 Quillet is running.
;
; The shell value of the machine changes only where /SHELL=1 or the tick asks for it. What stood there is kept
; in OWN_KEY and comes back with the removal, if the value is still ours by then. While an upgrade replaces the
; program, the earlier shell stands there: whatever fails, the next user gets a shell.
Unicode true
Target amd64-unicode
ManifestSupportedOS all
ManifestDPIAware true
RequestExecutionLevel admin
SetCompressor /SOLID lzma
SetDateSave off
AllowSkipFiles off
ShowInstDetails nevershow
ShowUninstDetails nevershow

Name "Quillet"
BrandingText "Quillet ${VERSION}"
OutFile "${OUTPUT}"

!define WINLOGON_KEY "SOFTWARE\Microsoft\Windows NT\CurrentVersion\Winlogon"
!define OWN_KEY "SOFTWARE\Quillet"
!define PROGRAMS_KEY "SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall\Quillet"
!define SYSTEM_SHELL "explorer.exe"
!define ERROR_RUNNING 5
!define ERROR_FAILED 2

!include LogicLib.nsh
!include FileFunc.nsh
!include MUI2.nsh

!define MUI_ICON "${STAGE}\..\quillet.ico"
!define MUI_UNICON "${STAGE}\..\quillet.ico"
!define MUI_ABORTWARNING
!define MUI_COMPONENTSPAGE_SMALLDESC
!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"
!insertmacro MUI_LANGUAGE "Spanish"

LangString running ${LANG_ENGLISH} "Quillet is running in a session of this machine. Have its users log off, and try again."
LangString running ${LANG_SPANISH} "Quillet se está ejecutando en una sesión de este equipo. Pida a sus usuarios que cierren la sesión e inténtelo de nuevo."
LangString oldStays ${LANG_ENGLISH} "The installed version of Quillet could not be removed. Nothing was changed."
LangString oldStays ${LANG_SPANISH} "No se ha podido quitar la versión instalada de Quillet. No se ha cambiado nada."
LangString shellRefused ${LANG_ENGLISH} "The shell of this machine could not be changed."
LangString shellRefused ${LANG_SPANISH} "No se ha podido cambiar el shell de este equipo."
LangString programName ${LANG_ENGLISH} "Quillet"
LangString programName ${LANG_SPANISH} "Quillet"
LangString programText ${LANG_ENGLISH} "The program, its libraries and a settings file if there is none."
LangString programText ${LANG_SPANISH} "El programa, sus bibliotecas y un archivo de configuración si no hay ninguno."
LangString shellName ${LANG_ENGLISH} "Shell of this machine"
LangString shellName ${LANG_SPANISH} "Shell de este equipo"
LangString shellText ${LANG_ENGLISH} "Starts Quillet at log-on instead of the present shell. Removing Quillet puts that back."
LangString shellText ${LANG_SPANISH} "Inicia Quillet al iniciar la sesión en lugar del shell actual, que vuelve al quitar Quillet."

VIProductVersion "${VERSION4}"
VIFileVersion "${VERSION4}"
VIAddVersionKey /LANG=${LANG_ENGLISH} "ProductName" "Quillet"
VIAddVersionKey /LANG=${LANG_ENGLISH} "FileDescription" "Quillet installer"
VIAddVersionKey /LANG=${LANG_ENGLISH} "FileVersion" "${VERSION}"
VIAddVersionKey /LANG=${LANG_ENGLISH} "ProductVersion" "${VERSION}"
VIAddVersionKey /LANG=${LANG_ENGLISH} "LegalCopyright" "Copyright (C) 2026 The Quillet developers"

Var settings ; the path of the settings file
Var oldFolder ; of the version that is installed, "" when there is none
Var isOurShell ; whether the machine's shell value names a starter of ours
Var isUpgrade

; --- For installer and uninstaller

!macro SHARED UN

; Pushes 1 when both files on the stack are there and have the same bytes, else 0.
Function ${UN}SameFiles
    Exch $0
    Exch
    Exch $1
    Push $2
    Push $3
    Push $4
    StrCpy $4 0
    ClearErrors
    FileOpen $2 "$0" r
    ${IfNot} ${Errors}
        FileOpen $3 "$1" r
        ${IfNot} ${Errors}
            ${Do}
                ClearErrors
                FileReadByte $2 $0
                ${If} ${Errors}
                    StrCpy $0 end
                ${EndIf}
                ClearErrors
                FileReadByte $3 $1
                ${If} ${Errors}
                    StrCpy $1 end
                ${EndIf}
                ${If} $0 != $1
                    ${Break}
                ${ElseIf} $0 == end
                    StrCpy $4 1
                    ${Break}
                ${EndIf}
            ${Loop}
            FileClose $3
        ${EndIf}
        FileClose $2
    ${EndIf}
    StrCpy $0 $4
    Pop $4
    Pop $3
    Pop $2
    Pop $1
    Exch $0
FunctionEnd

; Pushes 1 when the text on the stack is in the one below it, whatever the case of letters, else 0.
Function ${UN}Contains
    Exch $0
    Exch
    Exch $1
    Push $2
    Push $3
    Push $4
    StrLen $2 $0
    StrCpy $3 0
    ${Do}
        StrCpy $4 $1 $2 $3
        ${If} $4 == $0
            StrCpy $0 1
            ${Break}
        ${ElseIf} $4 == ""
            StrCpy $0 0
            ${Break}
        ${EndIf}
        IntOp $3 $3 + 1
    ${Loop}
    Pop $4
    Pop $3
    Pop $2
    Pop $1
    Exch $0
FunctionEnd

; Ends with a message when a session runs one of the programs in the folder on the stack.
Function ${UN}EndIfRunning
    Exch $0
    Push $1
    Push $2
    ${ForEach} $2 1 2 + 1
        StrCpy $1 "$0\quillet.exe"
        ${If} $2 = 2
            StrCpy $1 "$0\quillet-session.exe"
        ${EndIf}
        ${If} ${FileExists} $1
            ClearErrors
            FileOpen $1 $1 a ; Windows does not let anybody write into a program that runs
            ${If} ${Errors}
                MessageBox MB_OK|MB_ICONSTOP "$(running)" /SD IDOK
                SetErrorLevel ${ERROR_RUNNING}
                Quit
            ${EndIf}
            FileClose $1
        ${EndIf}
    ${Next}
    Pop $2
    Pop $1
    Pop $0
FunctionEnd

; Sets isOurShell: the machine's shell value names a program of ours, however it is written.
Function ${UN}FindShell
    Push $0
    ReadRegStr $0 HKLM "${WINLOGON_KEY}" "Shell"
    Push $0
    Push "\quillet-session.exe"
    Call ${UN}Contains
    Pop $isOurShell
    ${If} $isOurShell = 0
        Push $0
        Push "\quillet.exe"
        Call ${UN}Contains
        Pop $isOurShell
    ${EndIf}
    Pop $0
FunctionEnd

; Makes what is on the stack the machine's shell, and says so and ends when that is refused. Variables of the
; environment in it are for Windows to replace.
Function ${UN}SetShell
    Exch $0
    Push $1
    Push $0
    Push "%"
    Call ${UN}Contains
    Pop $1
    ${If} $1 = 0
        WriteRegStr HKLM "${WINLOGON_KEY}" "Shell" $0
    ${Else}
        WriteRegExpandStr HKLM "${WINLOGON_KEY}" "Shell" $0
    ${EndIf}
    ReadRegStr $1 HKLM "${WINLOGON_KEY}" "Shell"
    ${If} $1 != $0
        MessageBox MB_OK|MB_ICONSTOP "$(shellRefused)" /SD IDOK
        SetErrorLevel ${ERROR_FAILED}
        Quit
    ${EndIf}
    Pop $1
    Pop $0
FunctionEnd

; Puts the shell back that was there before ours.
Function ${UN}RestoreShell
    Push $0
    ReadRegStr $0 HKLM "${OWN_KEY}" "PreviousShell"
    ${If} $0 == ""
        StrCpy $0 "${SYSTEM_SHELL}"
    ${EndIf}
    Push $0
    Call ${UN}SetShell
    Pop $0
FunctionEnd

!macroend
!insertmacro SHARED ""
!insertmacro SHARED "un."

; --- Installation

Section "$(programName)" sectionProgram
    SectionIn RO
    Push $INSTDIR
    Call EndIfRunning
    StrCpy $isOurShell 0
    ${If} $oldFolder != ""
        Push $oldFolder
        Call EndIfRunning
        Call FindShell
        ${If} $isOurShell = 1
            Call RestoreShell
        ${EndIf}
        ; The version that is there takes its files away; it leaves what this one goes on with.
        ${If} ${FileExists} "$oldFolder\uninstall.exe"
            StrCpy $0 ${ERROR_FAILED}
            ClearErrors
            ExecWait '"$oldFolder\uninstall.exe" /S /UPGRADE=1 _?=$oldFolder' $0
            ${If} ${Errors}
            ${OrIf} $0 <> 0
                MessageBox MB_OK|MB_ICONSTOP "$(oldStays)" /SD IDOK
                SetErrorLevel ${ERROR_FAILED}
                Quit
            ${EndIf}
            Delete "$oldFolder\uninstall.exe"
            ${If} $oldFolder != $INSTDIR
                CreateDirectory $INSTDIR
                Delete "$INSTDIR\quillet.ini.written"
                Rename "$oldFolder\quillet.ini.written" "$INSTDIR\quillet.ini.written"
                RMDir "$oldFolder"
            ${EndIf}
        ${EndIf}
    ${EndIf}

    !include "${FILES}"
    ClearErrors
    WriteUninstaller "$INSTDIR\uninstall.exe"
    ${If} ${Errors}
        SetErrorLevel ${ERROR_FAILED}
        Abort
    ${EndIf}

    ; The settings are the administrator's as soon as they differ from what an installation wrote.
    Push $settings
    Push "$INSTDIR\quillet.ini.written"
    Call SameFiles
    Pop $0
    ${If} $0 = 1
    ${OrIfNot} ${FileExists} $settings
        CreateDirectory "$PROGRAMFILES64\Tidewell Desktop"
        File "/oname=$settings" "${STAGE}\quillet.ini.sample"
        File "/oname=$INSTDIR\quillet.ini.written" "${STAGE}\quillet.ini.sample"
    ${EndIf}

    WriteRegStr HKLM "${OWN_KEY}" "InstallFolder" $INSTDIR
    WriteRegStr HKLM "${OWN_KEY}" "Version" "${VERSION}"
    WriteRegStr HKLM "${PROGRAMS_KEY}" "DisplayName" "Quillet"
    WriteRegStr HKLM "${PROGRAMS_KEY}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKLM "${PROGRAMS_KEY}" "DisplayIcon" "$INSTDIR\quillet.exe"
    WriteRegStr HKLM "${PROGRAMS_KEY}" "Publisher" "The Quillet developers"
    WriteRegStr HKLM "${PROGRAMS_KEY}" "InstallLocation" $INSTDIR
    WriteRegStr HKLM "${PROGRAMS_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKLM "${PROGRAMS_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKLM "${PROGRAMS_KEY}" "EstimatedSize" ${SIZE}
    WriteRegDWORD HKLM "${PROGRAMS_KEY}" "NoModify" 1
    WriteRegDWORD HKLM "${PROGRAMS_KEY}" "NoRepair" 1
    ${If} $isOurShell = 1 ; as it was; only now is all of it there
        Push '"$INSTDIR\quillet-session.exe"'
        Call SetShell
    ${EndIf}
SectionEnd

Section /o "$(shellName)" sectionShell
    Call FindShell
    ${If} $isOurShell = 0 ; else what is ours would be taken for what was there before
        ReadRegStr $0 HKLM "${WINLOGON_KEY}" "Shell"
        WriteRegStr HKLM "${OWN_KEY}" "PreviousShell" $0
    ${EndIf}
    Push '"$INSTDIR\quillet-session.exe"'
    Call SetShell
SectionEnd

Function .onInit
    SetRegView 64
    SetShellVarContext all
    StrCpy $settings "$PROGRAMFILES64\Tidewell Desktop\quillet.ini"
    ReadRegStr $oldFolder HKLM "${OWN_KEY}" "InstallFolder"
    ${If} $INSTDIR == "" ; no /D
        StrCpy $INSTDIR "$PROGRAMFILES64\Quillet"
        ${If} $oldFolder != ""
            StrCpy $INSTDIR $oldFolder
        ${EndIf}
    ${EndIf}
    ${GetParameters} $0
    ${GetOptions} $0 "/SHELL=" $1
    ${If} $1 == "1"
        !insertmacro SelectSection ${sectionShell}
    ${EndIf}
FunctionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
    !insertmacro MUI_DESCRIPTION_TEXT ${sectionProgram} "$(programText)"
    !insertmacro MUI_DESCRIPTION_TEXT ${sectionShell} "$(shellText)"
!insertmacro MUI_FUNCTION_DESCRIPTION_END

; --- Removal

Function un.onInit
    SetRegView 64
    SetShellVarContext all
    StrCpy $settings "$PROGRAMFILES64\Tidewell Desktop\quillet.ini"
    ${GetParameters} $0
    ${GetOptions} $0 "/UPGRADE=" $isUpgrade
FunctionEnd

Section "Uninstall"
    Push $INSTDIR
    Call un.EndIfRunning
    ${If} $isUpgrade != 1
        ; First of all: whatever fails later, the next user gets a shell.
        Call un.FindShell
        ${If} $isOurShell = 1
            Call un.RestoreShell
        ${EndIf}
        Push $settings
        Push "$INSTDIR\quillet.ini.written"
        Call un.SameFiles
        Pop $0
        ${If} $0 = 1
            Delete $settings
            RMDir "$PROGRAMFILES64\Tidewell Desktop" ; if nothing else is in it
        ${EndIf}
        Delete "$INSTDIR\quillet.ini.written"
        DeleteRegKey HKLM "${PROGRAMS_KEY}"
        DeleteRegKey HKLM "${OWN_KEY}"
    ${EndIf}
    !include "${REMOVAL}"
    ${If} $isUpgrade != 1
        Delete "$INSTDIR\uninstall.exe"
        RMDir "$INSTDIR" ; if nothing else is in it
    ${EndIf}
SectionEnd
