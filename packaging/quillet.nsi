; The installer: Quillet for everybody on this machine. Built by tools/package, which defines
;
;   VERSION      as the program says it
;   VERSION4     the same with four numbers
;   STAGE        the folder with what is installed
;   FILES        a script that installs every file of STAGE, and
;   REMOVAL      one with the macros DELETE_FILES and REMOVE_FOLDERS, for these and no others
;   SIZE         what they take, in KiB
;   OUTPUT       the installer
;
; Switches of the installer: /S silent, /SHELL=1 makes Quillet the machine's shell, /D=FOLDER (the last one,
; without quotes). Of the uninstaller: /S silent, _?=FOLDER (the last one, without quotes): it waits until all is
; done, and stays there itself. Others are ignored. Exit codes: 0 done, 1 given up by the user, 2 failed; and, with
; nothing changed, 5 Quillet is running, 6 another installer or uninstaller is, 7 no administrator's rights, 8 no room.
;
; The shell value of the machine changes only where /SHELL=1 or the tick asks for it. What stood there is kept
; in OWN_KEY and comes back with the removal, if the value is still ours by then. While an upgrade replaces the
; program, the earlier shell stands there: whatever fails, the next user gets a shell. By then the list of programs
; says that Quillet is not complete, and there is an uninstaller for what is there; installing again goes on from it.
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
InstallDir "$PROGRAMFILES64\Quillet" ; a folder that is chosen by hand gets this last name too

!define WINLOGON_KEY "SOFTWARE\Microsoft\Windows NT\CurrentVersion\Winlogon"
!define OWN_KEY "SOFTWARE\Quillet"
!define PROGRAMS_KEY "SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall\Quillet"
!define SYSTEM_SHELL "explorer.exe"

!include LogicLib.nsh
!include FileFunc.nsh
!include WordFunc.nsh
!include MUI2.nsh

!define MUI_ICON "${STAGE}\..\quillet.ico"
!define MUI_UNICON "${STAGE}\..\quillet.ico"
!define MUI_ABORTWARNING
!define MUI_COMPONENTSPAGE_SMALLDESC
!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!define MUI_INSTFILESPAGE_ABORTHEADER_SUBTEXT "$(notComplete)"
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"
!insertmacro MUI_LANGUAGE "Spanish"
!include "${__FILEDIR__}/texts.nsh"

VIProductVersion "${VERSION4}"
VIFileVersion "${VERSION4}"
VIAddVersionKey /LANG=${LANG_ENGLISH} "ProductName" "Quillet"
VIAddVersionKey /LANG=${LANG_ENGLISH} "FileDescription" "Quillet installer"
VIAddVersionKey /LANG=${LANG_ENGLISH} "FileVersion" "${VERSION}"
VIAddVersionKey /LANG=${LANG_ENGLISH} "ProductVersion" "${VERSION}"
VIAddVersionKey /LANG=${LANG_ENGLISH} "LegalCopyright" "Copyright (C) 2026 The Quillet developers"

Var settings ; the path of the settings file
Var oldFolder ; of the version that is installed, "" when there is none
Var oldVersion ; likewise, and "" when its installation failed
Var isOurShell ; whether the machine's shell value is ours, see FindShell
Var isUpgrade

; --- For installer and uninstaller

!include "${REMOVAL}"
!include "${__FILEDIR__}/checks.nsh"
!include "${__FILEDIR__}/shell.nsh"

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

!macroend
!insertmacro SHARED ""
!insertmacro SHARED "un."

; --- Installation

!macro FAIL_ON_ERRORS
    ${If} ${Errors}
        Abort
    ${EndIf}
!macroend

!define REPLACE_AND_WAIT 9 ; MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH

; Before anything of the version that is there has gone.
!macro CLEAR_AND_END_WITH TEXT
    Delete "$INSTDIR\uninstall.new"
    RMDir $INSTDIR ; if nothing else is in it
    !insertmacro END_WITH ${TEXT} ${ERROR_FAILED}
!macroend

Section "$(programName)" sectionProgram
    SectionIn RO
    Call EndInBadFolder
    Push $INSTDIR
    Call EndIfRunning
    ${If} $oldFolder != ""
        Push $oldFolder
        Call EndIfRunning
    ${EndIf}
    Call EndWithoutRoom
    Call LookAtShell
    ; Never half an uninstaller in the place of a whole one. It is the last of what is packed, so all of it has been
    ; unpacked when this is there.
    ClearErrors
    ${If} $oldFolder != ""
        Delete "$oldFolder\uninstall.new"
    ${EndIf}
    CreateDirectory $INSTDIR
    WriteUninstaller "$INSTDIR\uninstall.new"
    ${If} ${Errors}
        !insertmacro CLEAR_AND_END_WITH cannotWrite
    ${EndIf}
    ${If} $oldFolder != ""
    ${AndIf} ${FileExists} "$oldFolder\uninstall.new"
        StrCpy $INSTDIR $oldFolder ; the same one under another name
    ${EndIf}

    ReadRegStr $oldVersion HKLM "${OWN_KEY}" "Version"
    ${If} $isOurShell = 1
        Call SuspendShell
        ${If} ${Errors}
            !insertmacro CLEAR_AND_END_WITH shellRefused
        ${EndIf}
    ${EndIf}
    ; The version that is there takes its files away; it leaves what this one goes on with.
    ${If} $oldFolder != ""
    ${AndIf} ${FileExists} "$oldFolder\uninstall.exe"
        WriteRegStr HKLM "${PROGRAMS_KEY}" "DisplayName" "$(incompleteName)"
        StrCpy $0 ${ERROR_FAILED}
        ClearErrors
        ExecWait '"$oldFolder\uninstall.exe" /S /UPGRADE=1 _?=$oldFolder' $0
        ${If} ${Errors}
        ${OrIf} $0 <> 0
        ${AndIf} $oldVersion != "" ; else its uninstaller may be damaged too, and its files are overwritten
            WriteRegStr HKLM "${PROGRAMS_KEY}" "DisplayName" "Quillet"
            !insertmacro CLEAR_AND_END_WITH oldStays
        ${EndIf}
    ${EndIf}

    ; Until all is there, this is what can be done about the part that is.
    ClearErrors
    SetFileAttributes "$INSTDIR\uninstall.exe" NORMAL
    ClearErrors
    System::Call 'kernel32::MoveFileExW(w "$INSTDIR\uninstall.new", w "$INSTDIR\uninstall.exe", i ${REPLACE_AND_WAIT}) i .r0'
    ${If} $0 = 0
        SetErrors
    ${EndIf}
    WriteRegStr HKLM "${OWN_KEY}" "InstallFolder" $INSTDIR
    WriteRegStr HKLM "${PROGRAMS_KEY}" "DisplayName" "$(incompleteName)"
    WriteRegStr HKLM "${PROGRAMS_KEY}" "Publisher" "The Quillet developers"
    WriteRegStr HKLM "${PROGRAMS_KEY}" "InstallLocation" $INSTDIR
    WriteRegStr HKLM "${PROGRAMS_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKLM "${PROGRAMS_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    !insertmacro FAIL_ON_ERRORS
    DeleteRegValue HKLM "${OWN_KEY}" "Version"
    DeleteRegValue HKLM "${PROGRAMS_KEY}" "DisplayVersion"
    ${If} $oldFolder != ""
    ${AndIf} $oldFolder != $INSTDIR
        DeleteRegValue HKLM "${OWN_KEY}" "OwnShell" ; it names the old folder
        Delete "$oldFolder\uninstall.exe"
        Delete "$INSTDIR\quillet.ini.written"
        Rename "$oldFolder\quillet.ini.written" "$INSTDIR\quillet.ini.written"
        RMDir "$oldFolder"
    ${EndIf}

    !include "${FILES}"

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

    ${If} $isOurShell <> 0 ; only now is all of it there
        Call BringShellBack
    ${EndIf}
    ClearErrors
    WriteRegStr HKLM "${PROGRAMS_KEY}" "DisplayIcon" "$INSTDIR\quillet.exe"
    WriteRegDWORD HKLM "${PROGRAMS_KEY}" "EstimatedSize" ${SIZE}
    WriteRegDWORD HKLM "${PROGRAMS_KEY}" "NoModify" 1
    WriteRegDWORD HKLM "${PROGRAMS_KEY}" "NoRepair" 1
    WriteRegStr HKLM "${PROGRAMS_KEY}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKLM "${PROGRAMS_KEY}" "DisplayName" "Quillet"
    WriteRegStr HKLM "${OWN_KEY}" "Version" "${VERSION}"
    !insertmacro FAIL_ON_ERRORS
    DeleteRegValue HKLM "${OWN_KEY}" "ShellWanted"
    DeleteRegValue HKLM "${OWN_KEY}" "OwnShell"
SectionEnd

Section /o "$(shellName)" sectionShell
    Call FindShell
    ${If} $isOurShell = 0 ; else what is ours would be taken for what was there before
        Call SaveShell
    ${EndIf}
    Call SetShell
SectionEnd

; Sets isOurShell where this installation has to know it.
Function LookAtShell
    StrCpy $isOurShell 0
    ${If} $oldFolder != ""
    ${OrIf} ${FileExists} "$INSTDIR\quillet.exe" ; unpacked there, and perhaps made the shell by hand
    ${OrIf} ${SectionIsSelected} ${sectionShell}
        Call FindShell
    ${EndIf}
FunctionEnd

Function .onInstFailed
    SetErrorLevel ${ERROR_FAILED}
FunctionEnd

; Sets INSTDIR to what /D says, and to nothing when that holds what no folder's name may: NSIS itself leaves such
; letters out, or takes a bad folder for none.
Function ReadFolder
    Push $0
    Push $1
    Push $2
    System::Call 'kernel32::GetCommandLineW() w .r0'
    StrCpy $1 0
    ${Do}
        StrCpy $2 $0 4 $1
        IntOp $1 $1 + 1
        ${If} $2 S== " /D="
            IntOp $1 $1 + 3
            StrCpy $0 $0 "" $1
            ${Do}
                StrCpy $1 $0 1 -1
                ${If} $1 != "\"
                ${AndIf} $1 != " "
                    ${Break}
                ${EndIf}
                StrCpy $0 $0 -1
            ${Loop}
            StrCpy $INSTDIR $0
            ${If} $INSTDIR != $0
                StrCpy $INSTDIR ""
            ${EndIf}
            ${Break}
        ${EndIf}
    ${LoopUntil} $2 == ""
    Pop $2
    Pop $1
    Pop $0
FunctionEnd

Function .onInit
    Call EndWithoutRights
    Call EndIfNotAlone
    SetRegView 64
    SetShellVarContext all
    StrCpy $settings "$PROGRAMFILES64\Tidewell Desktop\quillet.ini"
    ReadRegStr $oldFolder HKLM "${OWN_KEY}" "InstallFolder"
    ${If} $oldFolder != ""
        StrCpy $INSTDIR $oldFolder
    ${EndIf}
    Call ReadFolder
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
    Call un.EndWithoutRights
    SetRegView 64
    SetShellVarContext all
    StrCpy $settings "$PROGRAMFILES64\Tidewell Desktop\quillet.ini"
    Call un.IsOurFolder
    Pop $0
    ${If} $0 = 0
        !insertmacro END_WITH notHere ${ERROR_FAILED}
    ${EndIf}
    ${GetParameters} $0
    ${GetOptions} $0 "/UPGRADE=" $isUpgrade
    ${If} $isUpgrade != 1 ; else the installer that started this one is at work
        Call un.EndIfNotAlone
    ${EndIf}
FunctionEnd

Section "Uninstall"
    Push $INSTDIR
    Call un.EndIfRunning
    ; First of all: whatever fails later, the next user gets a shell.
    Call un.FindShell
    ${If} $isOurShell = 1
        Call un.RestoreShell
        ${If} ${Errors}
            !insertmacro END_WITH shellRefused ${ERROR_FAILED}
        ${EndIf}
    ${EndIf}
    ClearErrors
    !insertmacro DELETE_FILES
    ${If} $isUpgrade != 1 ; else the installer writes over what is still there, or says that it cannot
        ${If} ${Errors}
            WriteRegStr HKLM "${PROGRAMS_KEY}" "DisplayName" "$(incompleteName)"
            DeleteRegValue HKLM "${PROGRAMS_KEY}" "DisplayVersion"
            DeleteRegValue HKLM "${OWN_KEY}" "Version"
            DeleteRegValue HKLM "${OWN_KEY}" "ShellWanted"
            DeleteRegValue HKLM "${OWN_KEY}" "OwnShell"
            !insertmacro END_WITH notRemoved ${ERROR_FAILED}
        ${EndIf}
    ${EndIf}
    !insertmacro REMOVE_FOLDERS
    ${If} $isUpgrade != 1
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
        Delete "$INSTDIR\uninstall.new"
        Delete "$INSTDIR\uninstall.exe"
        RMDir "$INSTDIR" ; if nothing else is in it
    ${EndIf}
SectionEnd
