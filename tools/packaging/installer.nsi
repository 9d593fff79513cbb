; The installer, for all users of a computer or for the one who runs it. tools/packaging/package.py compiles it and says
;   VERSION     three numbers
;   PAYLOAD     the folder with what is installed
;   GENERATED   the folder with files.nsh, registration.nsh and, where 64-bit programs may be served, surrogate.nsh
;   TARGET      the installer
;
; What a user may write on the command line: /S for silence, /AllUsers or /CurrentUser, /No64 (not for 64-bit programs) and, as
; the last word and without quotation marks, /D=FOLDER. A silent one ends with 0; with 2 when something could not be written,
; after it has taken the registration back; with 87 for both kinds of users at once or a folder that can't be; with 740 when it
; needs an administrator.
Unicode true
SetCompressor /SOLID lzma
ManifestDPIAware true
; Nobody is asked for rights before they are needed: the installer starts itself again for all users.
RequestExecutionLevel user

!include LogicLib.nsh
!include FileFunc.nsh
!include x64.nsh
!include nsDialogs.nsh
!include MUI2.nsh
!include "${GENERATED}\files.nsh"
!include "${GENERATED}\registration.nsh"
!if /FileExists "${GENERATED}\surrogate.nsh"
    !define SURROGATE
    !include "${GENERATED}\surrogate.nsh"
!endif

!define NEEDS_ADMINISTRATOR 740
!define WRONG_WORDS 87
!define INSTALLED "Software\Microsoft\Windows\CurrentVersion\Uninstall\qvObjects"

Name "qvObjects ${VERSION}"
OutFile "${TARGET}"
BrandingText "qvObjects ${VERSION}"
AllowSkipFiles off
ShowInstDetails show
ShowUninstDetails show

Var users ; AllUsers or CurrentUser
Var asked ; whether the command line says which
Var rights ; Admin, Power, User or Guest
Var for_all_button
Var updating ; yes when an earlier installation is in the folder
Var registering ; yes from the first entry in the registry on

!define MUI_ABORTWARNING
Page custom choose_users leave_users
!ifdef SURROGATE
    !insertmacro MUI_PAGE_COMPONENTS
!endif
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English
!insertmacro MUI_LANGUAGE German

!macro text name english german
    LangString ${name} ${LANG_ENGLISH} "${english}"
    LangString ${name} ${LANG_GERMAN} "${german}"
!macroend
!insertmacro text UsersTitle "Users" "Benutzer"
!insertmacro text UsersQuestion "Who shall use qvObjects?" "Wer soll qvObjects benutzen?"
!insertmacro text ForAll "&All users of this computer" "&Alle Benutzer dieses Computers"
!insertmacro text ForAllHint "Needs the rights of an administrator." "Dafür sind die Rechte eines Administrators nötig."
!insertmacro text ForMe "Only &me" "Nur &ich"
!insertmacro text ForMeHint \
    "Needs no rights. Programs that run as administrator do not find the library." \
    "Dafür sind keine Rechte nötig. Programme, die als Administrator laufen, finden die Bibliothek nicht."
!insertmacro text NoRights \
    "qvObjects can be installed for all users, or removed for them, by an administrator only." \
    "Nur ein Administrator kann qvObjects für alle Benutzer installieren oder entfernen."
!insertmacro text BothUsers \
    "/AllUsers and /CurrentUser can't be used together." "/AllUsers und /CurrentUser schließen einander aus."
!insertmacro text NoFolder "There can't be such a folder." "Einen solchen Ordner kann es nicht geben."
!insertmacro text NotWritten \
    "qvObjects could not be installed: something could not be written." \
    "qvObjects konnte nicht installiert werden: Nicht alles ließ sich schreiben."
!insertmacro text Library "The library, its help and examples" "Die Bibliothek, ihre Hilfe und Beispiele"
!insertmacro text For64Bit "Use by 64-bit programs" "Benutzung durch 64-Bit-Programme"

VIProductVersion "${VERSION}.0"
VIFileVersion "${VERSION}.0"
!macro version_texts language description
    VIAddVersionKey /LANG=${language} ProductName "qvObjects"
    VIAddVersionKey /LANG=${language} CompanyName "The authors of qvObjects"
    VIAddVersionKey /LANG=${language} LegalCopyright "Copyright © the authors of qvObjects"
    VIAddVersionKey /LANG=${language} FileDescription "${description}"
    VIAddVersionKey /LANG=${language} FileVersion "${VERSION}"
    VIAddVersionKey /LANG=${language} ProductVersion "${VERSION}"
!macroend
!insertmacro version_texts ${LANG_ENGLISH} "Installs qvObjects"
!insertmacro version_texts ${LANG_GERMAN} "Installiert qvObjects"

; ---- For whom -----------------------------------------------------------------------------------------------------------------

!macro end_with status text
    SetErrorLevel ${status}
    MessageBox MB_OK|MB_ICONSTOP "${text}" /SD IDOK
    Quit
!macroend

!macro define_use_context un
Function ${un}use_context
    ${If} $users == AllUsers
        SetShellVarContext all
    ${Else}
        SetShellVarContext current
    ${EndIf}
FunctionEnd
!macroend
!insertmacro define_use_context ""
!insertmacro define_use_context "un."

; The folder of the users chosen, or the one that they have it in already.
Function use_folder
    ReadRegStr $INSTDIR SHCTX "${INSTALLED}" InstallLocation
    ${If} $INSTDIR != ""
        Return
    ${EndIf}
    ${If} $users == AllUsers
        StrCpy $INSTDIR "$PROGRAMFILES\qvObjects"
        Return
    ${EndIf}
    GetKnownFolderPath $INSTDIR {5CD7AEE2-2219-4A67-B85D-6C9CE15660CB} ; the user's programs
    ${If} $INSTDIR == ""
        StrCpy $INSTDIR "$LOCALAPPDATA\Programs"
    ${EndIf}
    StrCpy $INSTDIR "$INSTDIR\qvObjects"
FunctionEnd

; Starts this installer again as administrator, and ends this one; returns when the user did not want that.
Function ask_for_rights
    ClearErrors
    ExecShell runas "$EXEPATH" "/AllUsers"
    ${IfNot} ${Errors}
        Quit
    ${EndIf}
FunctionEnd

Function .onInit
    UserInfo::GetAccountType
    Pop $rights
    ${GetParameters} $0
    ClearErrors
    ${GetOptions} $0 "/CurrentUser" $1
    ${IfNot} ${Errors}
        StrCpy $asked CurrentUser
    ${EndIf}
    ClearErrors
    ${GetOptions} $0 "/AllUsers" $1
    ${IfNot} ${Errors}
        ${If} $asked == CurrentUser
            !insertmacro end_with ${WRONG_WORDS} "$(BothUsers)"
        ${EndIf}
        StrCpy $asked AllUsers
    ${EndIf}

    StrCpy $users $asked
    ${If} $users == ""
        StrCpy $users CurrentUser
        ReadRegStr $1 HKCU "${INSTALLED}" InstallLocation
        ${If} $rights == Admin
        ${AndIf} $1 == ""
            StrCpy $users AllUsers
        ${EndIf}
    ${EndIf}
    ${If} $users == AllUsers
    ${AndIf} $rights != Admin
        ${IfNot} ${Silent}
            Call ask_for_rights
        ${EndIf}
        !insertmacro end_with ${NEEDS_ADMINISTRATOR} "$(NoRights)"
    ${EndIf}
    Call use_context
    ${If} $INSTDIR == "" ; the command line names none, or one that can't be
        System::Call "kernel32::GetCommandLineW() w.r0"
        ClearErrors
        ${GetOptions} $0 "/D=" $1
        ${IfNot} ${Errors}
            !insertmacro end_with ${WRONG_WORDS} "$(NoFolder)"
        ${EndIf}
        Call use_folder
    ${EndIf}
    Call choose_sections
FunctionEnd

Function choose_users
    ${If} $asked != ""
        Abort ; the next page
    ${EndIf}
    !insertmacro MUI_HEADER_TEXT "$(UsersTitle)" "$(UsersQuestion)"
    nsDialogs::Create 1018
    Pop $0
    ${NSD_CreateRadioButton} 10u 10u -10u 12u "$(ForAll)"
    Pop $for_all_button
    ${NSD_CreateLabel} 22u 23u -22u 20u "$(ForAllHint)"
    Pop $0
    ${NSD_CreateRadioButton} 10u 50u -10u 12u "$(ForMe)"
    Pop $0
    ${If} $users == AllUsers
        ${NSD_Check} $for_all_button
    ${Else}
        ${NSD_Check} $0
    ${EndIf}
    ${NSD_CreateLabel} 22u 63u -22u 20u "$(ForMeHint)"
    Pop $0
    ${If} $rights != Admin
        SendMessage $for_all_button ${BCM_SETSHIELD} 0 1
    ${EndIf}
    nsDialogs::Show
FunctionEnd

Function leave_users
    StrCpy $users CurrentUser
    ${NSD_GetState} $for_all_button $0
    ${If} $0 == ${BST_CHECKED}
        StrCpy $users AllUsers
        ${If} $rights != Admin
            Call ask_for_rights
            Abort ; they may choose again
        ${EndIf}
    ${EndIf}
    Call use_context
    Call use_folder
FunctionEnd

; ---- Installing ---------------------------------------------------------------------------------------------------------------

; Moves the library out of the way. Programs that have loaded it keep it, under another name, until they end; that file goes
; with the next installing or removing or, for all users, when the computer starts again.
!macro take_library_away
    Delete "$INSTDIR\qvObjects.dll.old*"
    Delete "$INSTDIR\qvObjects.dll"
    ${If} ${FileExists} "$INSTDIR\qvObjects.dll"
        System::Call "kernel32::GetTickCount() i.r0"
        Rename "$INSTDIR\qvObjects.dll" "$INSTDIR\qvObjects.dll.old$0"
        Delete /REBOOTOK "$INSTDIR\qvObjects.dll.old$0"
        SetRebootFlag false ; nothing waits for it
    ${EndIf}
!macroend

!macro define_unregister un
Function ${un}unregister
    !ifdef SURROGATE
        !insertmacro surrogate_remove
    !endif
    !insertmacro registration_remove
FunctionEnd
!macroend
!insertmacro define_unregister ""
!insertmacro define_unregister "un."

!macro remove_files
    !insertmacro payload_remove
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR"
!macroend

Section "$(Library)" library_section
    SectionIn RO
    ${If} ${FileExists} "$INSTDIR\uninstall.exe"
        StrCpy $updating yes
    ${EndIf}
    SetOutPath "$INSTDIR"
    ; The old library stays until the new one is there.
    File "/oname=qvObjects.dll.new" "${PAYLOAD}\qvObjects.dll"
    !insertmacro payload_install
    WriteUninstaller "$INSTDIR\uninstall.exe"
    !insertmacro take_library_away
    ClearErrors
    Rename "$INSTDIR\qvObjects.dll.new" "$INSTDIR\qvObjects.dll"
    ${If} ${Errors}
        Abort "$(NotWritten)"
    ${EndIf}

    StrCpy $registering yes
    ${If} $updating == yes
        Call unregister ; serving 64-bit programs may have been chosen before, and not now
    ${EndIf}
    ClearErrors
    !insertmacro registration_write
    WriteRegStr SHCTX "${INSTALLED}" DisplayName "qvObjects"
    WriteRegStr SHCTX "${INSTALLED}" DisplayVersion "${VERSION}"
    WriteRegStr SHCTX "${INSTALLED}" Publisher "The authors of qvObjects"
    WriteRegStr SHCTX "${INSTALLED}" DisplayIcon "$INSTDIR\uninstall.exe"
    WriteRegStr SHCTX "${INSTALLED}" InstallLocation "$INSTDIR"
    WriteRegStr SHCTX "${INSTALLED}" UninstallString '"$INSTDIR\uninstall.exe"'
    WriteRegStr SHCTX "${INSTALLED}" QuietUninstallString '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD SHCTX "${INSTALLED}" NoModify 1
    WriteRegDWORD SHCTX "${INSTALLED}" NoRepair 1
    SectionGetSize ${library_section} $0
    WriteRegDWORD SHCTX "${INSTALLED}" EstimatedSize $0
    ${If} ${Errors}
        Abort "$(NotWritten)"
    ${EndIf}
    !ifdef HELP
        CreateShortCut "$SMPROGRAMS\qvObjects.lnk" "$INSTDIR\${HELP}"
    !endif
SectionEnd

!ifdef SURROGATE
Section "$(For64Bit)" surrogate_section
    ClearErrors
    !insertmacro surrogate_write
    ${If} ${Errors}
        Abort "$(NotWritten)"
    ${EndIf}
SectionEnd
!endif

Function choose_sections
    !ifdef SURROGATE
        ${GetParameters} $0
        ClearErrors
        ${GetOptions} $0 "/No64" $1
        ${IfNot} ${Errors}
            SectionSetFlags ${surrogate_section} 0
        ${EndIf}
    !endif
FunctionEnd

; An update that failed leaves the files, which are those of the old or of the new version, but no half registration.
Function .onInstFailed
    ${If} $registering == yes
        Call unregister
        DeleteRegKey SHCTX "${INSTALLED}"
    ${EndIf}
    Delete "$INSTDIR\qvObjects.dll.new"
    ${If} $updating != yes
        Delete "$INSTDIR\qvObjects.dll"
        !insertmacro remove_files
    ${EndIf}
FunctionEnd

; ---- Removing -----------------------------------------------------------------------------------------------------------------

Function un.onInit
    UserInfo::GetAccountType
    Pop $rights
    StrCpy $users CurrentUser
    ReadRegStr $0 HKLM "${INSTALLED}" InstallLocation
    ${If} $0 == $INSTDIR
        StrCpy $users AllUsers
        ${If} $rights != Admin
            ${IfNot} ${Silent}
                ClearErrors
                ExecShell runas "$INSTDIR\uninstall.exe"
                ${IfNot} ${Errors}
                    Quit
                ${EndIf}
            ${EndIf}
            !insertmacro end_with ${NEEDS_ADMINISTRATOR} "$(NoRights)"
        ${EndIf}
    ${EndIf}
    Call un.use_context
FunctionEnd

Section Uninstall
    ; A copy that was registered or installed at another place since then stays.
    ReadRegStr $0 SHCTX "Software\Classes\${TYPE_LIBRARY_PATH}" ""
    ${If} $0 == "$INSTDIR\qvObjects.dll"
        Call un.unregister
    ${EndIf}
    ReadRegStr $0 SHCTX "${INSTALLED}" InstallLocation
    ${If} $0 == $INSTDIR
        DeleteRegKey SHCTX "${INSTALLED}"
        Delete "$SMPROGRAMS\qvObjects.lnk"
    ${EndIf}
    !insertmacro take_library_away
    !insertmacro remove_files
SectionEnd
