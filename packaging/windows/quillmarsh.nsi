; The installer for Windows; scripts/windows/package.sh compiles it and passes VERSION, LISTS (the
; folder with the lists of what is installed and removed), ICON, PICTURE, and OUTPUT.
Unicode true
Target amd64-unicode
SetCompressor /SOLID lzma
RequestExecutionLevel user

!include FileFunc.nsh
!include LogicLib.nsh
!include MUI2.nsh

!define UNINSTALL_KEY Software\Microsoft\Windows\CurrentVersion\Uninstall\quillmarsh
!define TEMPORARY $TEMP\QuillmarshV3TmpPath
!define LIST qmake\ControlDevList.json
!define SHIPPED_LIST qmake\ControlDevList.default.json
!define COPIED copied-tools.txt

Name Quillmarsh
OutFile ${OUTPUT}
; The program writes beside itself, so it lies where its user may write.
InstallDir $LOCALAPPDATA\Programs\quillmarsh
InstallDirRegKey HKCU ${UNINSTALL_KEY} InstallLocation
ShowInstDetails show
VIProductVersion ${VERSION}.0
VIAddVersionKey ProductName Quillmarsh
VIAddVersionKey ProductVersion ${VERSION}
VIAddVersionKey FileVersion ${VERSION}
VIAddVersionKey FileDescription "Quillmarsh setup"
VIAddVersionKey LegalCopyright "Copyright (c) 2026 The quillmarsh authors"

!define MUI_ICON ${ICON}
!define MUI_UNICON ${ICON}
!define MUI_WELCOMEFINISHPAGE_BITMAP ${PICTURE}
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_RUN
!define MUI_FINISHPAGE_RUN_FUNCTION startProgram
; Belongs to the page that follows next.
!define MUI_PAGE_CUSTOMFUNCTION_SHOW showFinish
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English
!insertmacro MUI_LANGUAGE SimpChinese

LangString IS_RUNNING ${LANG_ENGLISH} "Quillmarsh is running. Wait until no device is being updated, close it, and try again."
LangString IS_RUNNING ${LANG_SIMPCHINESE} "Quillmarsh 正在运行。请等待设备升级完成，关闭程序后重试。"
LangString WITH_DRIVER ${LANG_ENGLISH} "Start Quillmarsh as administrator now, so that it can install the devices' USB driver"
LangString WITH_DRIVER ${LANG_SIMPCHINESE} "立即以管理员身份启动 Quillmarsh，以便安装设备的 USB 驱动程序"

; Its file cannot be opened for writing while it runs; in silence that ends the setup with 2.
!macro refuseWhileRunning
    ${Do}
        ${IfNot} ${FileExists} $INSTDIR\quillmarsh.exe
            ${Break}
        ${EndIf}
        ClearErrors
        FileOpen $0 $INSTDIR\quillmarsh.exe a
        ${IfNot} ${Errors}
            FileClose $0
            ${Break}
        ${EndIf}
        ${If} ${Cmd} `MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION $(IS_RUNNING) /SD IDCANCEL IDCANCEL`
            SetErrorLevel 2
            Quit
        ${EndIf}
    ${Loop}
!macroend

; Sets $0 to 1 when the user has a control list other than the one that was installed.
!macro defineIsListOwn un
Function ${un}isListOwn
    StrCpy $0 0
    ${IfNot} ${FileExists} $INSTDIR\${LIST}
        Return
    ${EndIf}
    StrCpy $0 1
    ${IfNot} ${FileExists} $INSTDIR\${SHIPPED_LIST}
        Return
    ${EndIf}
    FileOpen $1 $INSTDIR\${LIST} r
    FileOpen $2 $INSTDIR\${SHIPPED_LIST} r
    ${Do}
        FileRead $1 $3
        FileRead $2 $4
        ${If} $3 S!= $4
            ${Break}
        ${EndIf}
        ${If} $3 == ""
            StrCpy $0 0
            ${Break}
        ${EndIf}
    ${Loop}
    FileClose $1
    FileClose $2
FunctionEnd
!macroend
!insertmacro defineIsListOwn ""
!insertmacro defineIsListOwn un.

; What the maker adds may lie beside the installer; what was taken from there is written down.
!macro copyTool NAME
    ${If} ${FileExists} $EXEDIR\${NAME}
        DetailPrint ${NAME}
        ClearErrors
        CopyFiles /SILENT $EXEDIR\${NAME} $INSTDIR\${NAME}
        ${IfNot} ${Errors}
            FileWrite $0 "${NAME}$\r$\n"
        ${EndIf}
    ${EndIf}
!macroend

Section
    !insertmacro refuseWhileRunning
    Call isListOwn
    StrCpy $5 $0
    !include ${LISTS}\install.nsh
    ${If} $5 == 0
        CopyFiles /SILENT $INSTDIR\${SHIPPED_LIST} $INSTDIR\${LIST}
    ${EndIf}

    CreateDirectory $INSTDIR\amd64
    ${If} $EXEDIR != $INSTDIR
        FileOpen $0 $INSTDIR\${COPIED} a
        FileSeek $0 0 END
        !insertmacro copyTool upgcmd.exe
        !insertmacro copyTool upgcmdHid.exe
        !insertmacro copyTool IAP_Programmer.exe
        !insertmacro copyTool dpscat.exe
        !insertmacro copyTool Artinchip_SoC.inf
        !insertmacro copyTool amd64\libusb0.dll
        !insertmacro copyTool amd64\libusbK.dll
        !insertmacro copyTool amd64\WdfCoInstaller01009.dll
        !insertmacro copyTool amd64\libusbK.sys
        FileClose $0
    ${EndIf}

    ; The working folder of what is started through it, and so the place of the logs.
    SetOutPath $INSTDIR
    CreateShortcut $SMPROGRAMS\Quillmarsh.lnk $INSTDIR\quillmarsh.exe
    WriteUninstaller $INSTDIR\uninstall.exe
    WriteRegStr HKCU ${UNINSTALL_KEY} DisplayName Quillmarsh
    WriteRegStr HKCU ${UNINSTALL_KEY} DisplayVersion ${VERSION}
    WriteRegStr HKCU ${UNINSTALL_KEY} Publisher "The quillmarsh authors"
    WriteRegStr HKCU ${UNINSTALL_KEY} DisplayIcon $INSTDIR\quillmarsh.exe
    WriteRegStr HKCU ${UNINSTALL_KEY} InstallLocation $INSTDIR
    WriteRegStr HKCU ${UNINSTALL_KEY} UninstallString '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKCU ${UNINSTALL_KEY} QuietUninstallString '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKCU ${UNINSTALL_KEY} NoModify 1
    WriteRegDWORD HKCU ${UNINSTALL_KEY} NoRepair 1
    ${GetSize} $INSTDIR /S=0K $0 $1 $2
    WriteRegDWORD HKCU ${UNINSTALL_KEY} EstimatedSize $0
SectionEnd

Function showFinish
    ${If} ${FileExists} $INSTDIR\Artinchip_SoC.inf
        SendMessage $mui.FinishPage.Run ${WM_SETTEXT} 0 STR:$(WITH_DRIVER)
    ${EndIf}
FunctionEnd

; The program checks the driver at each start, and may install it only as administrator.
Function startProgram
    SetOutPath $INSTDIR
    ${If} ${FileExists} $INSTDIR\Artinchip_SoC.inf
        ExecShell runas $INSTDIR\quillmarsh.exe
    ${Else}
        Exec '"$INSTDIR\quillmarsh.exe"'
    ${EndIf}
FunctionEnd

Function un.removeCopiedTools
    ClearErrors
    FileOpen $1 $INSTDIR\${COPIED} r
    ${IfNot} ${Errors}
        ${Do}
            ClearErrors
            FileRead $1 $2
            ${If} ${Errors}
                ${Break}
            ${EndIf}
            StrCpy $2 $2 -2
            Delete $INSTDIR\$2
        ${Loop}
        FileClose $1
    ${EndIf}
    Delete $INSTDIR\${COPIED}
FunctionEnd

; The driver belongs to the devices and stays. Where there was none, the program's check at its start may
; have left its service behind, which then is of no use to anybody. Takes rights that a user may lack.
Function un.removeServiceWithoutDriver
    StrCpy $0 $SYSDIR\drivers\libusbK.sys
    ${If} ${FileExists} $0
        Return
    ${EndIf}
    ReadRegStr $1 HKLM SYSTEM\CurrentControlSet\Services\libusbK ImagePath
    ${If} $1 == $0
    ${OrIf} $1 == \??\$0
        nsExec::Exec '"$SYSDIR\sc.exe" delete libusbK'
        Pop $0
    ${EndIf}
FunctionEnd

; Logs, a control list of the user's own, and whatever else lies in the folder stay.
Section Uninstall
    !insertmacro refuseWhileRunning
    Call un.isListOwn
    ${If} $0 == 0
        Delete $INSTDIR\${LIST}
    ${EndIf}
    Call un.removeCopiedTools
    Call un.removeServiceWithoutDriver
    ; What the program makes anew at need.
    Delete $INSTDIR\qmake\dev.jn
    Delete $INSTDIR\Artinchip_SoC.cat
    Delete ${TEMPORARY}\tmp\dev.img*
    Delete ${TEMPORARY}\tmp\dev.bin*
    Delete ${TEMPORARY}.lock
    RMDir ${TEMPORARY}\qmake
    RMDir ${TEMPORARY}\tmp
    RMDir ${TEMPORARY}
    !include ${LISTS}\uninstall.nsh
    Delete $SMPROGRAMS\Quillmarsh.lnk
    Delete $INSTDIR\uninstall.exe
    RMDir $INSTDIR\amd64
    RMDir $INSTDIR
    DeleteRegKey HKCU ${UNINSTALL_KEY}
SectionEnd
