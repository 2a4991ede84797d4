; What has to hold before anything is changed. Each of these ends with a message and an exit code if it does not.

!define ERROR_FAILED 2
!define ERROR_RUNNING 5
!define ERROR_NOT_ALONE 6
!define ERROR_NO_RIGHTS 7
!define ERROR_NO_ROOM 8

!define SPARE 4096 ; KiB for what is not in SIZE: uninstaller, settings, the ends of the last clusters

!macro END_WITH TEXT CODE
    MessageBox MB_OK|MB_ICONSTOP "$(${TEXT})" /SD IDOK
    SetErrorLevel ${CODE}
    Quit
!macroend

!macro CHECKS UN

; Somebody without an administrator's rights: Windows asks for them, but where User Account Control is off it does not.
Function ${UN}EndWithoutRights
    Push $0
    UserInfo::GetAccountType
    Pop $0
    ${If} $0 != "Admin"
        !insertmacro END_WITH noRights ${ERROR_NO_RIGHTS}
    ${EndIf}
    Pop $0
FunctionEnd

; Another installer or uninstaller of ours. From here on this one is what others find, until it ends.
Function ${UN}EndIfNotAlone
    Push $0
    Push $1
    System::Call 'kernel32::CreateMutexW(p 0, i 0, w "Global\Quillet setup") p .r0 ?e'
    Pop $1 ; why
    ${If} $0 P= 0
    ${OrIf} $1 = 183 ; ERROR_ALREADY_EXISTS
        !insertmacro END_WITH notAlone ${ERROR_NOT_ALONE}
    ${EndIf}
    Pop $1
    Pop $0
FunctionEnd

; A session that runs one of the programs in the folder on the stack.
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
                !insertmacro END_WITH running ${ERROR_RUNNING}
            ${EndIf}
            FileClose $1
        ${EndIf}
    ${Next}
    Pop $2
    Pop $1
    Pop $0
FunctionEnd

; Pushes 1 when uninstall.exe in INSTDIR says that it is of this product, else 0.
Function ${UN}IsOurFolder
    Push $0
    Push $1
    Push $2
    Push $3
    StrCpy $3 0
    System::Call 'version::GetFileVersionInfoSizeW(w "$INSTDIR\uninstall.exe", p 0) i .r0'
    ${If} $0 <> 0
        System::Alloc $0
        Pop $1
        System::Call 'version::GetFileVersionInfoW(w "$INSTDIR\uninstall.exe", i 0, i r0, p r1) i .r2'
        ${If} $2 <> 0
            System::Call 'version::VerQueryValueW(p r1, w "\StringFileInfo\040904E4\ProductName", *p .r2, *i .r0) i .r0'
            ${If} $0 <> 0
                System::Call '*$2(&w8 .r0)'
                ${If} $0 == "Quillet"
                    StrCpy $3 1
                ${EndIf}
            ${EndIf}
        ${EndIf}
        System::Free $1
    ${EndIf}
    StrCpy $0 $3
    Pop $3
    Pop $2
    Pop $1
    Exch $0
FunctionEnd

!macroend
!insertmacro CHECKS ""
!insertmacro CHECKS "un."

; A folder that is none below a drive's root, or that another program is in. Gives INSTDIR its plain spelling.
Function EndInBadFolder
    Push $0
    Push $1
    StrCpy $0 $INSTDIR 2 1
    ${If} $0 == ":\" ; else it would be taken from wherever the installer was started
        System::Call 'kernel32::GetFullPathNameW(w "$INSTDIR", i ${NSIS_MAX_STRLEN}, w .r0, p 0) i .r1'
        ${If} $1 > 0
        ${AndIf} $1 < ${NSIS_MAX_STRLEN}
            StrCpy $INSTDIR $0
        ${EndIf}
    ${EndIf}
    StrCpy $0 $INSTDIR 2 1
    StrCpy $1 $INSTDIR 1 3
    ${If} $0 != ":\"
    ${OrIf} $1 == ""
        !insertmacro END_WITH badFolder ${ERROR_FAILED}
    ${EndIf}
    ${If} $INSTDIR != $oldFolder
    ${AndIfNot} ${FileExists} "$INSTDIR\quillet.exe"
        StrCpy $0 1
        ${If} ${FileExists} "$INSTDIR\uninstall.exe" ; ours stays when it removes Quillet in place, or an installation fails
            Call IsOurFolder
            Pop $0
        ${ElseIf} ${FileExists} "$INSTDIR\Qt5Core.dll"
            StrCpy $0 0
        ${EndIf}
        ${If} $0 = 0
            !insertmacro END_WITH notOurs ${ERROR_FAILED}
        ${EndIf}
    ${EndIf}
    Pop $1
    Pop $0
FunctionEnd

; Too little room for a whole version: what an upgrade frees first is not counted.
Function EndWithoutRoom
    Push $0
    Push $1
    Push $2
    StrCpy $0 $INSTDIR
    ${DoUntil} ${FileExists} "$0\*.*"
        ${GetParent} $0 $1
        ${If} $1 == ""
            ${Break}
        ${EndIf}
        StrCpy $0 $1
    ${Loop}
    System::Call 'kernel32::GetDiskFreeSpaceExW(w "$0\", *l .r1, p 0, p 0) i .r2'
    ${If} $2 <> 0 ; else nothing is known
        System::Int64Op $1 / 1024
        Pop $1
        IntOp $2 ${SIZE} + ${SPARE}
        System::Int64Op $1 < $2
        Pop $1
        ${If} $1 = 1
            !insertmacro END_WITH noRoom ${ERROR_NO_ROOM}
        ${EndIf}
    ${EndIf}
    Pop $2
    Pop $1
    Pop $0
FunctionEnd
