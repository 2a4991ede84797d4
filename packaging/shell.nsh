; The shell value of the machine: whether it is ours, how it becomes ours, how the earlier one comes back.
;
; Values of OWN_KEY:
;
;   PreviousShell   what stood there before ours, of the same type; absent when that was nothing
;   OwnShell        ours as it stood there, for as long as ShellWanted does; absent when it is the usual one
;   ShellWanted     1 while an installation replaces the program of a machine whose shell is ours. If it stays
;                   after that, the installation failed, and the next one puts ours back

!define MACHINE -2147483646 ; HKEY_LOCAL_MACHINE
!define TEXT_AS_IT_IS 0x10000006 ; RRF_RT_REG_SZ | RRF_RT_REG_EXPAND_SZ | RRF_NOEXPAND
!define NOT_FOUND 2
!define KEY_READ 0x20019

; Copies a text in the registry, of whatever length, with its type. $0 is 0, NOT_FOUND when there is none or it is
; empty, else Windows' code for why it could not be read (no text, perhaps) or written.
!macro COPY_TEXT FROM_KEY FROM TO_KEY TO
    Push $1
    Push $2
    Push $3
    System::Call 'advapi32::RegGetValueW(p ${MACHINE}, w "${FROM_KEY}", w "${FROM}", i ${TEXT_AS_IT_IS}, p 0, p 0, *i .r2) i .r0'
    ${If} $0 = 0
    ${AndIf} $2 > 2 ; bytes: more than the 0 at its end
        System::Alloc $2
        Pop $3
        System::Call 'advapi32::RegGetValueW(p ${MACHINE}, w "${FROM_KEY}", w "${FROM}", i ${TEXT_AS_IT_IS}, *i .r1, p r3, *i r2r2) i .r0'
        ${If} $0 = 0
            System::Call 'advapi32::RegSetKeyValueW(p ${MACHINE}, w "${TO_KEY}", w "${TO}", i r1, p r3, i r2) i .r0'
        ${EndIf}
        System::Free $3
    ${ElseIf} $0 = 0
        StrCpy $0 ${NOT_FOUND}
    ${EndIf}
    Pop $3
    Pop $2
    Pop $1
!macroend

; Writes a key to the disk now.
!macro FLUSH KEY
    Push $0
    Push $1
    System::Call 'advapi32::RegOpenKeyExW(p ${MACHINE}, w "${KEY}", i 0, i ${KEY_READ}, *p .r0) i .r1'
    ${If} $1 = 0
        System::Call 'advapi32::RegFlushKey(p r0)'
        System::Call 'advapi32::RegCloseKey(p r0)'
    ${EndIf}
    Pop $1
    Pop $0
!macroend

!macro LOOK_FOR PROGRAM
    ${If} $isOurShell = 0
        Push $1
        Push '${PROGRAM}'
        Call ${UN}Contains
        Pop $isOurShell
    ${EndIf}
!macroend

!macro SHELL UN

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

; Sets isOurShell: 1 when the machine's shell value names a program of ours, however it is written; 2 when it would, had
; the last installation not failed, and nobody has set another one since; else 0. Says so and ends when the value cannot
; be read or is no text.
Function ${UN}FindShell
    Push $0
    Push $1
    System::Call 'advapi32::RegGetValueW(p ${MACHINE}, w "${WINLOGON_KEY}", w "Shell", i ${TEXT_AS_IT_IS}, p 0, p 0, p 0) i .r0'
    ${If} $0 <> 0
    ${AndIf} $0 <> ${NOT_FOUND}
        !insertmacro END_WITH shellRefused ${ERROR_FAILED}
    ${EndIf}
    ReadRegStr $0 HKLM "${WINLOGON_KEY}" "Shell"
    ${WordReplace} '$0"' "/" "\" "+" $1 ; a name ends at a quotation mark, or where the value does
    StrCpy $isOurShell 0
    !insertmacro LOOK_FOR "\quillet-session.exe"
    !insertmacro LOOK_FOR "\quillet.exe"
    !insertmacro LOOK_FOR '\quillet-session"'
    !insertmacro LOOK_FOR "\quillet-session "
    !insertmacro LOOK_FOR '\quillet"' ; a blank behind it may be one within a folder's name
    ReadRegDWORD $1 HKLM "${OWN_KEY}" "ShellWanted"
    ${If} $isOurShell = 0
    ${AndIf} $1 = 1
        ReadRegStr $1 HKLM "${OWN_KEY}" "PreviousShell"
        ${If} $1 == ""
            StrCpy $1 "${SYSTEM_SHELL}"
        ${EndIf}
        ${If} $0 == $1
            StrCpy $isOurShell 2
        ${EndIf}
    ${EndIf}
    Pop $1
    Pop $0
FunctionEnd

; Puts the shell back that was there before ours, and on the disk: a machine that loses its power has it too. The error
; flag is set when that is refused.
Function ${UN}RestoreShell
    Push $0
    ClearErrors
    !insertmacro COPY_TEXT "${OWN_KEY}" "PreviousShell" "${WINLOGON_KEY}" "Shell"
    ${If} $0 = ${NOT_FOUND}
        WriteRegStr HKLM "${WINLOGON_KEY}" "Shell" "${SYSTEM_SHELL}"
    ${ElseIf} $0 <> 0
        SetErrors
    ${EndIf}
    !insertmacro FLUSH "${WINLOGON_KEY}"
    Pop $0
FunctionEnd

!macroend
!insertmacro SHELL ""
!insertmacro SHELL "un."

; Makes the program in INSTDIR the machine's shell, and says so and ends when that is refused.
Function SetShell
    ClearErrors
    WriteRegStr HKLM "${WINLOGON_KEY}" "Shell" '"$INSTDIR\quillet-session.exe"'
    ${If} ${Errors}
        !insertmacro END_WITH shellRefused ${ERROR_FAILED}
    ${EndIf}
FunctionEnd

; Takes ours away from the machine's shell value until BringShellBack. The error flag is set when that is refused, and then
; nothing was changed.
Function SuspendShell
    Push $0
    DeleteRegValue HKLM "${OWN_KEY}" "OwnShell"
    ClearErrors
    WriteRegDWORD HKLM "${OWN_KEY}" "ShellWanted" 1
    !insertmacro COPY_TEXT "${WINLOGON_KEY}" "Shell" "${OWN_KEY}" "OwnShell"
    ${If} $0 <> 0
        SetErrors
    ${EndIf}
    ${IfNot} ${Errors}
        Call RestoreShell
    ${Else}
        SetErrors
    ${EndIf}
    ${If} ${Errors}
        DeleteRegValue HKLM "${OWN_KEY}" "ShellWanted"
        DeleteRegValue HKLM "${OWN_KEY}" "OwnShell"
        DeleteRegKey /ifempty HKLM "${OWN_KEY}"
        SetErrors
    ${EndIf}
    Pop $0
FunctionEnd

; Puts ours back as it was, or the program in INSTDIR where that is not known, and says so and ends when it is refused.
Function BringShellBack
    Push $0
    !insertmacro COPY_TEXT "${OWN_KEY}" "OwnShell" "${WINLOGON_KEY}" "Shell"
    ${If} $0 = ${NOT_FOUND}
        Call SetShell
    ${ElseIf} $0 <> 0
        !insertmacro END_WITH shellRefused ${ERROR_FAILED}
    ${EndIf}
    Pop $0
FunctionEnd

; Keeps the machine's shell value for RestoreShell, and says so and ends when that is refused.
Function SaveShell
    Push $0
    DeleteRegValue HKLM "${OWN_KEY}" "PreviousShell"
    !insertmacro COPY_TEXT "${WINLOGON_KEY}" "Shell" "${OWN_KEY}" "PreviousShell"
    ${If} $0 <> 0
    ${AndIf} $0 <> ${NOT_FOUND}
        !insertmacro END_WITH shellRefused ${ERROR_FAILED}
    ${EndIf}
    Pop $0
FunctionEnd
