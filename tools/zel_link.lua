-- The tables are made by tools/make_dissector.py from docs/device-link.md, not by hand.

local to_controller = {
    [1901] = {name = "Greeting", payload = {}},
    [1902] = {name = "QuitAcknowledged", payload = {}},
    [1905] = {name = "ScreenClosed", p1 = {[1] = "by time-out, or the standby screen came up"}, payload = {}},
    [1908] = {name = "PlaySound", payload = {{kind = "uint", label = "sound number", size = 2, each = 2, many = false, optional = false}}},
    [1920] = {name = "StoreUser", payload = {{record = "_gui_user_", first = 0, size = 486, many = false, optional = false}}},
    [1921] = {name = "StartEnrolment", payload = {}},
    [1922] = {name = "StartFaceCapture", p1 = {[2] = "camera test"}, payload = {{record = "_gui_user_", first = 0, size = 486, many = false, optional = true}}},
    [1923] = {name = "CheckUserId", payload = {{kind = "text", label = "customer ID", size = 0, each = 0, many = false, optional = false}}},
    [1926] = {name = "AbandonCardTag", payload = {}},
    [1927] = {name = "EnrolNetworkUser", payload = {{record = "_gui_user_", first = 0, size = 486, many = false, optional = false}}},
    [1931] = {name = "DeleteUser", p1 = {[1] = "ordered by the management service"}, payload = {{kind = "text", label = "user ID", size = 16, each = 16, many = false, optional = false}}},
    [1932] = {name = "DeleteUserGroup", p1 = {[0] = "general", [1] = "administrators", [2] = "in/out users", [3] = "all", [4] = "face only"}, p2 = {[1] = "ordered by the management service"}, payload = {}},
    [1933] = {name = "AskUserCounts", payload = {}},
    [1934] = {name = "UploadUsers", p1 = {[1] = "all", [0] = "new ones"}, p2 = {[0] = "start", [1] = "cancel"}, payload = {}},
    [1940] = {name = "ChangeUser", payload = {{record = "_gui_user_", first = 0, size = 486, many = false, optional = false}}},
    [1950] = {name = "SaveFaceSettings", payload = {{record = "_gui_menu_", first = 112, size = 5, many = false, optional = false}}},
    [1951] = {name = "SaveScreenSettings", payload = {{record = "_gui_menu_", first = 120, size = 7, many = false, optional = false}}},
    [1952] = {name = "SetBrightness", payload = {}},
    [1953] = {name = "SetClock", payload = {{record = "ClockTime", first = 0, size = 6, many = false, optional = false}}},
    [1954] = {name = "SaveSoundSettings", payload = {{record = "_gui_menu_", first = 117, size = 3, many = false, optional = false}}},
    [1955] = {name = "SetVolume", payload = {}},
    [1956] = {name = "ChooseSound", p1 = {[1] = "alarm", [2] = "failed recognition"}, payload = {}},
    [1957] = {name = "Initialise", p1 = {[0] = "logs", [1] = "settings", [2] = "everything"}, payload = {}},
    [1958] = {name = "Reboot", payload = {}},
    [1960] = {name = "UsbMount", p1 = {[0] = "mount", [1] = "check"}, payload = {}},
    [1962] = {name = "UsbImport", p1 = {[1] = "logs", [2] = "users", [3] = "settings", [4] = "all", [5] = "background", [7] = "card keys", [8] = "logo"}, payload = {{kind = "text", label = "path", size = 0, each = 0, many = false, optional = false}}},
    [1963] = {name = "UsbExport", p1 = {[1] = "logs", [2] = "users", [3] = "settings", [4] = "all", [9] = "logs of some days"}, payload = {{record = "ExportDates", first = 0, size = 6, many = false, optional = true}}},
    [1964] = {name = "UsbImportFile", payload = {{kind = "text", label = "path", size = 0, each = 0, many = false, optional = false}}},
    [1973] = {name = "SearchUser", p1 = {[1] = "card", [3] = "ID", [5] = "face"}, payload = {{kind = "text", label = "text", size = 0, each = 0, many = false, optional = false}}},
    [1975] = {name = "AskLogPage", payload = {{record = "GUI_USERLOG", first = 0, size = 40, many = false, optional = false}}},
    [1976] = {name = "SearchLogs", payload = {{record = "GUI_USERLOG", first = 0, size = 40, many = false, optional = false}}},
    [1981] = {name = "SaveDeviceSetup", p1 = {[2] = "by the management service"}, payload = {{record = "_gui_menu_", first = 127, size = 27, many = false, optional = false}}},
    [1982] = {name = "SaveRegistrationMode", payload = {{record = "_gui_menu_", first = 105, size = 7, many = false, optional = false}}},
    [1983] = {name = "SaveOperationSettings", payload = {{record = "OperationSettings", first = 0, size = 18, many = false, optional = false}}},
    [1984] = {name = "SaveOperationTimes", payload = {{record = "OperationTimes", first = 0, size = 17, many = false, optional = false}}},
    [1986] = {name = "SaveNetwork", p1 = {[1] = "TCP/IP screen", [2] = "cloud screen", [4] = "by the management service"}, payload = {{record = "_gui_menu_", first = 154, size = 26, many = false, optional = false}, {record = "ServiceNetwork", first = 0, size = 23, many = false, optional = false}}},
    [1987] = {name = "SaveDdns", payload = {{record = "_gui_menu_", first = 85, size = 20, many = false, optional = false}}},
    [1989] = {name = "TestLink", p1 = {[1] = "server", [2] = "DDNS"}, payload = {}},
    [1990] = {name = "UpdateFirmware", p1 = {[1] = "from the menu", [0] = "after a download"}, payload = {}},
    [2001] = {name = "RecognitionHidden", payload = {}},
    [2003] = {name = "LivePicture", p1 = {[1] = "shown", [0] = "hidden"}, payload = {}},
    [2010] = {name = "CameraRun", p1 = {[1] = "on", [0] = "off"}, p2 = {[1] = "for a face enrolment"}, payload = {}},
    [2011] = {name = "RecognitionMode", p1 = {[0] = "off", [1] = "recognition", [2] = "enrolment"}, payload = {}},
    [2020] = {name = "RecognitionKey", p1 = {[1] = "state", [16] = "in", [17] = "out", [18] = "break", [19] = "return", [32] = "pay one meal", [33] = "pay several (p2)", [34] = "screen hidden", [35] = "meal count changed", [36] = "visitor call"}, payload = {}},
    [2026] = {name = "AskUserData", payload = {{kind = "text", label = "card number", size = 16, each = 16, many = false, optional = false}}},
    [2027] = {name = "TextEntered", payload = {{kind = "text", label = "text", size = 0, each = 0, many = false, optional = false}}},
    [2028] = {name = "CameraPictureStop", payload = {}},
    [2029] = {name = "EnrolmentFinished", payload = {}},
    [2030] = {name = "CameraPictureStart", payload = {}},
    [2031] = {name = "AbandonFaceEnrolment", payload = {}},
    [2032] = {name = "DeleteFullLogs", payload = {}},
    [2033] = {name = "SpeakText", payload = {{kind = "text", label = "text", size = 128, each = 128, many = false, optional = true}}},
    [2035] = {name = "BurnInTimer", p1 = {[1] = "wake", [0] = "darken"}, payload = {}},
    [2036] = {name = "OpenDoor", payload = {}},
    [2037] = {name = "EnrolmentOption", payload = {}},
    [2039] = {name = "AskUnsentLogs", payload = {}},
    [2040] = {name = "AskUnsentUsers", payload = {}},
    [2042] = {name = "UserReported", payload = {{record = "UserReported", first = 0, size = 140, many = false, optional = false}}},
    [2044] = {name = "EventReported", payload = {{record = "EventReported", first = 0, size = 68, many = false, optional = false}}},
    [2046] = {name = "FaceEnrolmentProgress", payload = {}},
    [2047] = {name = "FaceEnrolmentScreen", p1 = {[1] = "shown", [0] = "hidden"}, payload = {}},
    [4000] = {name = "FactoryMode", p1 = {[0] = "enter", [1] = "leave"}, payload = {}},
    [4002] = {name = "FactoryLcdTest", p1 = {[0] = "start", [1] = "stop"}, payload = {}},
    [4004] = {name = "FactoryTouchTest", p1 = {[0] = "start", [1] = "stop"}, payload = {}},
    [4006] = {name = "FactoryPixelTest", p1 = {[0] = "start", [1] = "stop"}, payload = {}},
    [4008] = {name = "FactoryPowerTest", p1 = {[0] = "start", [1] = "stop"}, payload = {}},
    [4010] = {name = "FactorySoundTest", p1 = {[0] = "start", [1] = "stop"}, payload = {}},
    [4012] = {name = "FactoryLedTest", p1 = {[0] = "start", [1] = "stop"}, p2 = {[0] = "red", [1] = "green", [2] = "blue"}, payload = {}},
    [4014] = {name = "FactoryIoTest", p1 = {[0] = "start", [1] = "stop"}, p2 = {[0] = "relay", [1] = "exit button", [2] = "tamper switch"}, payload = {}},
    [4016] = {name = "FactoryProximityTest", p1 = {[0] = "start", [1] = "stop"}, payload = {}},
    [4018] = {name = "FactoryLightTest", p1 = {[0] = "start", [1] = "stop"}, payload = {}},
    [4020] = {name = "FactoryRs422Test", p1 = {[0] = "start", [1] = "stop"}, payload = {}},
    [4022] = {name = "FactoryCameraTest", p1 = {[0] = "start", [1] = "stop"}, p2 = {[0] = "infrared", [1] = "color"}, payload = {}},
    [4024] = {name = "FactoryCameraSwitch", p1 = {[0] = "start", [1] = "stop"}, p2 = {[0] = "infrared", [1] = "color"}, payload = {}},
    [4026] = {name = "FactoryCardTest", p1 = {[0] = "start", [1] = "stop"}, payload = {}},
    [4028] = {name = "FactoryCardAntennaTest", p1 = {[0] = "start", [1] = "stop"}, payload = {}},
    [4030] = {name = "FactoryColourTest", p1 = {[0] = "start", [1] = "stop"}, payload = {}},
    [4032] = {name = "FactoryVersionTest", p1 = {[0] = "start", [1] = "stop"}, payload = {}},
    [4034] = {name = "FactoryClockTest", p1 = {[0] = "start", [1] = "stop"}, payload = {}},
    [4036] = {name = "FactoryMacTest", p1 = {[0] = "start", [1] = "stop"}, payload = {}},
    [4038] = {name = "FactoryMemoryTest", p1 = {[0] = "start", [1] = "stop"}, payload = {}},
    [4040] = {name = "FactoryPingTest", p1 = {[0] = "start", [1] = "stop"}, payload = {}},
    [4042] = {name = "FactoryTouchVersion", p1 = {[0] = "start", [1] = "stop"}, payload = {}},
    [4043] = {name = "FactoryRestart", payload = {}},
    [4045] = {name = "FactoryMemoryReset", payload = {}},
    [4046] = {name = "UpdateMicrocontroller", payload = {}},
    [5000] = {name = "KeyClick", payload = {}},
}

local to_terminal = {
    [2901] = {name = "Quit", payload = {}},
    [2902] = {name = "SystemStatus", payload = {{record = "StatusReport", first = 0, size = 20, many = false, optional = true}}},
    [2905] = {name = "ScreenClosedAnswer", p1 = {[1] = "by time-out, or the standby screen came up"}, payload = {}},
    [2907] = {name = "Settings", payload = {{record = "_gui_menu_", first = 0, size = 380, many = false, optional = false}}},
    [2908] = {name = "SettingsChanged", payload = {{record = "_gui_menu_", first = 0, size = 380, many = false, optional = false}}},
    [2914] = {name = "TimeNotice", payload = {}},
    [2920] = {name = "UserStored", p1 = {[0] = "stored", [2] = "another enrolment runs", [3] = "too many administrators", [4] = "store full"}, payload = {{kind = "text", label = "user ID", size = 16, each = 16, many = false, optional = false}}},
    [2921] = {name = "CardTagged", p1 = {[0] = "the user's now", [2] = "the user's already"}, payload = {}},
    [2923] = {name = "UserIdChecked", p1 = {[0] = "free", [1] = "in use", [2] = "wrong length"}, payload = {}},
    [2924] = {name = "EnrolmentRefused", p1 = {[1] = "store full", [2] = "an enrolment is running"}, payload = {}},
    [2930] = {name = "UserDeleted", p1 = {[0] = "not registered", [1] = "found", [2] = "nothing tagged in time"}, p2 = {[0] = "face", [1] = "and 2 and 4 card", [3] = "ID"}, payload = {}},
    [2931] = {name = "UserDeleteResult", p1 = {[0] = "success", [1] = "failure"}, payload = {}},
    [2932] = {name = "UserGroupDeleted", p1 = {[0] = "success", [1] = "failure"}, p2 = {[0] = "general", [1] = "administrators", [2] = "in/out users", [3] = "all", [4] = "face only"}, payload = {}},
    [2933] = {name = "UserCountsAnswer", payload = {{record = "_gui_menu_", first = 44, size = 28, many = false, optional = false}}},
    [2934] = {name = "UsersUploaded", p1 = {[0] = "done", [1] = "another transfer runs", [2] = "no connection", [3] = "too many users", [4] = "cancelled", [15] = "too many for a wireless lock"}, payload = {}},
    [2940] = {name = "UserChanged", p1 = {[0] = "stored", [2] = "another enrolment runs", [3] = "too many administrators", [4] = "store full"}, payload = {}},
    [2947] = {name = "CardEnrolled", p1 = {[0] = "read"}, payload = {{kind = "text", label = "card number", size = 16, each = 16, many = false, optional = false}}},
    [2950] = {name = "FaceSettingsSaved", p1 = {[0] = "success", [1] = "failure"}, payload = {}},
    [2951] = {name = "ScreenSettingsSaved", p1 = {[0] = "success", [1] = "failure"}, payload = {}},
    [2954] = {name = "SoundSettingsSaved", p1 = {[0] = "success", [1] = "failure"}, payload = {}},
    [2957] = {name = "Initialised", p1 = {[0] = "success", [1] = "failure"}, p2 = {[0] = "logs", [1] = "settings", [2] = "everything"}, payload = {}},
    [2960] = {name = "UsbState", p1 = {[0] = "mounted", [2] = "present", [10] = "mounting"}, payload = {}},
    [2962] = {name = "UsbImported", p1 = {[1] = "logs", [2] = "users", [3] = "settings", [4] = "all", [5] = "background", [7] = "card keys", [8] = "logo"}, p2 = {[0] = "done", [1] = "no stick", [2] = "too many users", [4] = "too many administrators", [5] = "invalid data", [6] = "no valid file", [10] = "begun"}, payload = {}},
    [2963] = {name = "UsbExported", p1 = {[1] = "logs", [2] = "users", [3] = "settings", [4] = "all", [9] = "logs of some days"}, p2 = {[0] = "done", [2] = "not exported", [10] = "begun"}, payload = {}},
    [2964] = {name = "FirmwareProgress", p1 = {[0] = "restarts", [10] = "running"}, payload = {}},
    [2966] = {name = "UsbProgress", p1 = {[0] = "preparing", [1] = "copying", [2] = "completing"}, payload = {}},
    [2972] = {name = "ConnectionInfo", payload = {{record = "HostInfo", first = 0, size = 44, many = false, optional = false}}},
    [2973] = {name = "UserFound", p1 = {[0] = "success", [1] = "failure"}, p2 = {[1] = "card", [3] = "ID", [5] = "face"}, payload = {{record = "_gui_user_", first = 0, size = 486, many = false, optional = false}}},
    [2974] = {name = "UserSearchStarted", payload = {}},
    [2975] = {name = "LogPage", payload = {{record = "GUI_LOGDATA", first = 0, size = 284, many = true, optional = true}}},
    [2976] = {name = "LogCount", payload = {{kind = "uint", label = "count", size = 4, each = 4, many = false, optional = false}}},
    [2981] = {name = "DeviceSetupSaved", p1 = {[0] = "success", [1] = "failure"}, payload = {}},
    [2982] = {name = "RegistrationModeSaved", p1 = {[0] = "success", [1] = "failure"}, payload = {}},
    [2984] = {name = "OperationSettingsSaved", p1 = {[0] = "success", [1] = "failure"}, payload = {}},
    [2986] = {name = "NetworkSaved", p1 = {[0] = "success", [1] = "failure"}, payload = {}},
    [2987] = {name = "DdnsSaved", p1 = {[0] = "success", [1] = "failure"}, payload = {}},
    [2989] = {name = "LinkTested", p1 = {[0] = "success", [1] = "failure"}, p2 = {[1] = "server", [2] = "DDNS"}, payload = {}},
    [2990] = {name = "FirmwareUpdateAnswer", p1 = {[0] = "restarts for the upgrade"}, payload = {}},
    [2999] = {name = "UsbSending", p1 = {[1] = "sending", [2] = "preparing"}, payload = {}},
    [3000] = {name = "TrackingBox", payload = {{record = "TrackedFace", first = 0, size = 10, many = false, optional = false}}},
    [3001] = {name = "FaceEnrolled", p1 = {[0] = "guidance", [1] = "progress", [3] = "done", [4] = "face in use", [12] = "several faces", [13] = "too many administrators", [14] = "not clear", [15] = "ID in use"}, payload = {{kind = "text", label = "the ID of whose face it is", size = 0, each = 0, many = false, optional = true}}},
    [3010] = {name = "Recognised", payload = {{record = "RecognitionResult", first = 0, size = 160, many = false, optional = false}}},
    [3011] = {name = "RecognitionFailed", p1 = {[1] = "not registered", [2] = "not permitted"}, p2 = {[0] = "card", [1] = "face"}, payload = {}},
    [3020] = {name = "AccessEvent", p1 = {[0] = "new", [1] = "from the store"}, payload = {{record = "GUI_LOGDATA", first = 0, size = 284, many = false, optional = false}}},
    [3021] = {name = "UnsentDataWaiting", payload = {}},
    [3023] = {name = "NumberChecked", p1 = {[0] = "registered", [2] = "wrong length"}, payload = {}},
    [3026] = {name = "SleepScreen", payload = {}},
    [3027] = {name = "WakeScreen", payload = {}},
    [3028] = {name = "ShowLiveView", payload = {}},
    [3029] = {name = "VisitorCall", payload = {{record = "VisitorCallReport", first = 0, size = 136, many = false, optional = false}}},
    [3030] = {name = "AutomaticUserId", payload = {{kind = "text", label = "11 digits", size = 0, each = 0, many = false, optional = false}}},
    [3031] = {name = "FaceEnrolmentAbandoned", payload = {}},
    [3032] = {name = "FullLogsDeleted", payload = {}},
    [3033] = {name = "TextSpoken", payload = {}},
    [3034] = {name = "UserEnrolled", payload = {{record = "info_s", first = 0, size = 616, many = false, optional = false}}},
    [3035] = {name = "ControllerNote", payload = {}},
    [3036] = {name = "DoorOpened", payload = {}},
    [3038] = {name = "UnsentDataReady", payload = {}},
    [3039] = {name = "LogStoreReport", p1 = {[0] = "emptied"}, payload = {}},
    [4009] = {name = "FactoryPowerReport", payload = {{kind = "uint", label = "millivolts", size = 6, each = 2, many = true, optional = false}}},
    [4013] = {name = "FactoryLedReport", p1 = {[0] = "success", [1] = "failure"}, payload = {}},
    [4014] = {name = "FactoryIoReport", payload = {}},
    [4015] = {name = "FactoryIoStepDone", payload = {}},
    [4017] = {name = "FactoryProximityReport", payload = {{kind = "uint", label = "millimetres", size = 2, each = 2, many = false, optional = false}}},
    [4019] = {name = "FactoryLightReport", payload = {{kind = "uint", label = "lux", size = 2, each = 2, many = false, optional = false}}},
    [4021] = {name = "FactoryRs422Report", p1 = {[0] = "success", [1] = "failure"}, payload = {}},
    [4023] = {name = "FactoryCameraReport", p1 = {[0] = "success", [1] = "failure"}, payload = {}},
    [4025] = {name = "FactoryCameraSwitched", payload = {}},
    [4027] = {name = "FactoryCardReport", p1 = {[0] = "success", [1] = "failure"}, payload = {{kind = "text", label = "card number", size = 16, each = 16, many = false, optional = false}}},
    [4028] = {name = "FactoryCardAntennaReport", p1 = {[0] = "success", [1] = "failure"}, payload = {}},
    [4032] = {name = "FactoryVersionReport", payload = {{record = "_gui_menu_", first = 215, size = 64, many = false, optional = false}}},
    [4034] = {name = "FactoryClockReport", p1 = {[0] = "success", [1] = "failure"}, payload = {{record = "ClockTime", first = 0, size = 6, many = false, optional = false}}},
    [4036] = {name = "FactoryMacReport", p1 = {[0] = "success", [1] = "failure"}, payload = {{kind = "bytes", label = "6 bytes", size = 6, each = 6, many = false, optional = false}}},
    [4038] = {name = "FactoryMemoryReport", p1 = {[0] = "success", [1] = "failure"}, payload = {}},
    [4040] = {name = "FactoryPingReport", p1 = {[0] = "success", [1] = "failure"}, payload = {}},
    [4042] = {name = "FactoryTouchVersionReport", payload = {{kind = "text", label = "text", size = 16, each = 16, many = false, optional = false}}},
    [6001] = {name = "Ignored", payload = {}},
    [6002] = {name = "ControllerEvent", payload = {}},
    [6003] = {name = "SelfCheck", payload = {{kind = "uint", label = "bit set", size = 4, each = 4, many = false, optional = false}}},
}

local records = {
    _gui_menu_ = {
        size = 380,
        {at = 0, size = 1, name = "commissioned", kind = "uint", names = {[0] = "not set up yet"}},
        {at = 1, size = 1, name = "managerControl", kind = "uint", names = {[1] = "the management service may control the terminal"}},
        {at = 2, size = 2, name = "reserved1", kind = "bytes"},
        {at = 4, size = 24, name = "serial", kind = "text"},
        {at = 28, size = 16, name = "customerId", kind = "text"},
        {at = 44, size = 4, name = "users.all", kind = "uint"},
        {at = 48, size = 4, name = "users.general", kind = "uint"},
        {at = 52, size = 4, name = "users.admin", kind = "uint"},
        {at = 56, size = 4, name = "users.inOut", kind = "uint"},
        {at = 60, size = 4, name = "users.faceOnly", kind = "uint"},
        {at = 64, size = 4, name = "users.visitor", kind = "uint"},
        {at = 68, size = 4, name = "users.unsent", kind = "uint"},
        {at = 72, size = 1, name = "liveSeconds", kind = "uint"},
        {at = 73, size = 1, name = "resultSeconds", kind = "uint"},
        {at = 74, size = 1, name = "paymentDoneSeconds", kind = "uint"},
        {at = 75, size = 1, name = "attendanceDoneSeconds", kind = "uint"},
        {at = 76, size = 9, name = "reserved2", kind = "bytes"},
        {at = 85, size = 1, name = "ddns.use", kind = "uint"},
        {at = 86, size = 17, name = "ddns.host", kind = "text"},
        {at = 103, size = 2, name = "ddns.port", kind = "uint"},
        {at = 105, size = 1, name = "registration.on", kind = "uint"},
        {at = 106, size = 1, name = "registration.authMethod", kind = "uint", names = {[1] = "face", [2] = "face or card"}},
        {at = 107, size = 1, name = "registration.autoId", kind = "uint"},
        {at = 108, size = 1, name = "registration.wearGlasses", kind = "uint"},
        {at = 109, size = 1, name = "registration.syncAutoZone", kind = "uint"},
        {at = 110, size = 1, name = "registration.retainUserData", kind = "uint"},
        {at = 111, size = 1, name = "registration.userLevel", kind = "uint", names = {[1] = "general user", [2] = "visitor"}},
        {at = 112, size = 1, name = "face.securityLevel", kind = "uint"},
        {at = 113, size = 1, name = "face.camera", kind = "uint", names = {[0] = "infrared", [1] = "colour"}},
        {at = 114, size = 1, name = "face.saveThumbnail", kind = "uint"},
        {at = 115, size = 1, name = "face.useThumbnail", kind = "uint"},
        {at = 116, size = 1, name = "face.saveUnregistered", kind = "uint"},
        {at = 117, size = 1, name = "sound.volume", kind = "uint"},
        {at = 118, size = 1, name = "sound.alarmSound", kind = "uint", names = {[0] = "siren", [1] = "bell", [2] = "buzzer", [3] = "chime", [4] = "beeps"}},
        {at = 119, size = 1, name = "sound.recognitionFailSound", kind = "uint"},
        {at = 120, size = 1, name = "screen.brightness", kind = "uint"},
        {at = 121, size = 1, name = "screen.sleepMode", kind = "uint", names = {[600] = "seconds"}},
        {at = 122, size = 1, name = "screen.standbyMode", kind = "uint", names = {[0] = "clock", [1] = "chosen picture"}},
        {at = 123, size = 1, name = "screen.statusLed", kind = "uint"},
        {at = 124, size = 1, name = "screen.menuTimeout", kind = "uint", names = {[0] = "(never) seconds"}},
        {at = 125, size = 1, name = "screen.standbyPicture", kind = "uint"},
        {at = 126, size = 1, name = "screen.showThumbnail", kind = "uint"},
        {at = 127, size = 4, name = "setup.deviceNumber", kind = "uint"},
        {at = 131, size = 8, name = "setup.adminPassword", kind = "text"},
        {at = 139, size = 1, name = "setup.language", kind = "uint", names = {[0] = "Korean", [1] = "English", [2] = "Japanese"}},
        {at = 140, size = 1, name = "setup.relayUse", kind = "uint"},
        {at = 141, size = 1, name = "setup.relayType", kind = "uint", names = {[0] = "normally open", [1] = "normally closed"}},
        {at = 142, size = 1, name = "setup.doorOpenDuration", kind = "uint"},
        {at = 143, size = 1, name = "setup.tamperSwitch", kind = "uint"},
        {at = 144, size = 1, name = "setup.syncTime", kind = "uint", names = {[1] = "the time comes from the management service"}},
        {at = 145, size = 1, name = "setup.quickRegistration", kind = "uint"},
        {at = 146, size = 1, name = "setup.authMethod", kind = "uint", names = {[0] = "card", [1] = "face", [2] = "face or card", [3] = "face and card", [4] = "face and ID"}},
        {at = 147, size = 1, name = "setup.demo", kind = "uint", names = {[1] = "results are marked as a demonstration and not recorded"}},
        {at = 148, size = 1, name = "setup.alarmMode", kind = "uint", names = {[0] = "nothing", [1] = "arm", [2] = "disarm"}},
        {at = 149, size = 1, name = "setup.readerMode", kind = "uint", names = {[0] = "in", [1] = "out"}},
        {at = 150, size = 1, name = "setup.serviceMode", kind = "uint", names = {[0] = "in service", [1] = "out of service"}},
        {at = 151, size = 1, name = "setup.visitorCall", kind = "uint", names = {[1] = "the live view offers the visitor call"}},
        {at = 152, size = 1, name = "setup.operation", kind = "uint", names = {[0] = "access only", [1] = "attendance", [2] = "meals"}},
        {at = 153, size = 1, name = "setup.buttonUse", kind = "uint", names = {[1] = "the exit button opens the door"}},
        {at = 154, size = 1, name = "network.useManager", kind = "uint", names = {[1] = "the management service is in use"}},
        {at = 155, size = 1, name = "network.connectPeriod", kind = "uint"},
        {at = 156, size = 1, name = "network.checkPeriod", kind = "uint"},
        {at = 157, size = 1, name = "network.own.dhcp", kind = "uint", names = {[0] = "fixed address", [1] = "by DHCP"}},
        {at = 158, size = 4, name = "network.own.address", kind = "ipv4"},
        {at = 162, size = 4, name = "network.own.mask", kind = "ipv4"},
        {at = 166, size = 4, name = "network.own.gateway", kind = "ipv4"},
        {at = 170, size = 4, name = "network.own.dns", kind = "ipv4"},
        {at = 174, size = 4, name = "network.own.managerAddress", kind = "ipv4"},
        {at = 178, size = 2, name = "network.own.managerPort", kind = "uint"},
        {at = 180, size = 1, name = "operation.attendanceMode", kind = "uint", names = {[0] = "by time of day", [1] = "chosen by the person", [2] = "in", [3] = "out", [4] = "break", [5] = "return. Meals: breakfast off"}},
        {at = 181, size = 1, name = "operation.lunchOff", kind = "uint"},
        {at = 182, size = 1, name = "operation.saveSimpleAccess", kind = "uint", names = {[1] = "access without attendance is recorded. Meals"}},
        {at = 183, size = 1, name = "operation.supperOff", kind = "uint"},
        {at = 184, size = 1, name = "operation.doorOpenSetting", kind = "uint", names = {[0] = "always", [1] = "repeated use", [2] = "on out and break. Meals: 0 one meal per person and period"}},
        {at = 185, size = 1, name = "operation.doorOpenTime", kind = "uint"},
        {at = 186, size = 1, name = "operation.forcedOpenOff", kind = "uint", names = {[1] = "schedule not used. Meals"}},
        {at = 187, size = 1, name = "operation.forcedCloseOff", kind = "uint", names = {[1] = "schedule not used. Meals"}},
        {at = 188, size = 4, name = "operation.forcedOpen", kind = "range"},
        {at = 192, size = 4, name = "operation.forcedClose", kind = "range"},
        {at = 196, size = 4, name = "operation.weekdayIn", kind = "range"},
        {at = 200, size = 4, name = "operation.weekdayOut", kind = "range"},
        {at = 204, size = 4, name = "operation.saturdayIn", kind = "range"},
        {at = 208, size = 4, name = "operation.saturdayOut", kind = "range"},
        {at = 212, size = 1, name = "operation.holidayRule", kind = "uint", names = {[0] = "no attendance times", [1] = "as weekdays", [2] = "as Saturday. Meals: kept"}},
        {at = 213, size = 1, name = "operation.saveRecognitionFail", kind = "uint", names = {[1] = "refused people are recorded"}},
        {at = 214, size = 1, name = "operation.mealCountView", kind = "uint", names = {[0] = "counts are shown", [1] = "not"}},
        {at = 215, size = 16, name = "firmwareVersion", kind = "text"},
        {at = 231, size = 16, name = "kernelVersion", kind = "text"},
        {at = 247, size = 16, name = "mainBoardVersion", kind = "text"},
        {at = 263, size = 16, name = "ioBoardVersion", kind = "text"},
        {at = 279, size = 101, name = "reserved3", kind = "bytes"},
    },
    OperationSettings = {
        size = 18,
        {at = 0, size = 1, name = "attendanceMode", kind = "uint", names = {[0] = "by time of day", [1] = "chosen by the person", [2] = "in", [3] = "out", [4] = "break", [5] = "return. Meals: breakfast off"}},
        {at = 1, size = 1, name = "lunchOff", kind = "uint"},
        {at = 2, size = 1, name = "saveSimpleAccess", kind = "uint", names = {[1] = "access without attendance is recorded. Meals"}},
        {at = 3, size = 1, name = "supperOff", kind = "uint"},
        {at = 4, size = 1, name = "doorOpenSetting", kind = "uint", names = {[0] = "always", [1] = "repeated use", [2] = "on out and break. Meals: 0 one meal per person and period"}},
        {at = 5, size = 1, name = "doorOpenTime", kind = "uint"},
        {at = 6, size = 1, name = "forcedOpenOff", kind = "uint", names = {[1] = "schedule not used. Meals"}},
        {at = 7, size = 1, name = "forcedCloseOff", kind = "uint", names = {[1] = "schedule not used. Meals"}},
        {at = 8, size = 4, name = "forcedOpen", kind = "range"},
        {at = 12, size = 4, name = "forcedClose", kind = "range"},
        {at = 16, size = 1, name = "saveRecognitionFail", kind = "uint", names = {[1] = "refused people are recorded"}},
        {at = 17, size = 1, name = "mealCountView", kind = "uint", names = {[0] = "counts are shown", [1] = "not"}},
    },
    OperationTimes = {
        size = 17,
        {at = 0, size = 4, name = "weekdayIn", kind = "range"},
        {at = 4, size = 4, name = "weekdayOut", kind = "range"},
        {at = 8, size = 4, name = "saturdayIn", kind = "range"},
        {at = 12, size = 4, name = "saturdayOut", kind = "range"},
        {at = 16, size = 1, name = "holidayRule", kind = "uint", names = {[0] = "no attendance times", [1] = "as weekdays", [2] = "as Saturday. Meals: kept"}},
    },
    ServiceNetwork = {
        size = 23,
        {at = 0, size = 1, name = "useManager", kind = "uint", names = {[1] = "the management service is in use"}},
        {at = 1, size = 4, name = "address", kind = "ipv4"},
        {at = 5, size = 4, name = "mask", kind = "ipv4"},
        {at = 9, size = 4, name = "gateway", kind = "ipv4"},
        {at = 13, size = 4, name = "dns", kind = "ipv4"},
        {at = 17, size = 4, name = "managerAddress", kind = "ipv4"},
        {at = 21, size = 2, name = "managerPort", kind = "uint"},
    },
    ClockTime = {
        size = 6,
        {at = 0, size = 1, name = "year", kind = "uint"},
        {at = 1, size = 1, name = "month", kind = "uint"},
        {at = 2, size = 1, name = "day", kind = "uint"},
        {at = 3, size = 1, name = "hour", kind = "uint"},
        {at = 4, size = 1, name = "minute", kind = "uint"},
        {at = 5, size = 1, name = "second", kind = "uint"},
    },
    ExportDates = {
        size = 6,
        {at = 0, size = 1, name = "fromYear", kind = "uint"},
        {at = 1, size = 1, name = "fromMonth", kind = "uint"},
        {at = 2, size = 1, name = "fromDay", kind = "uint"},
        {at = 3, size = 1, name = "toYear", kind = "uint"},
        {at = 4, size = 1, name = "toMonth", kind = "uint"},
        {at = 5, size = 1, name = "toDay", kind = "uint"},
    },
    StatusReport = {
        size = 20,
        {at = 0, size = 1, name = "armed", kind = "uint", names = {[1] = "the site is armed"}},
        {at = 1, size = 3, name = "reserved", kind = "bytes"},
        {at = 4, size = 16, name = "meals", kind = "MEAL_COUNT"},
    },
    MEAL_COUNT = {
        size = 16,
        {at = 0, size = 4, name = "breakfast", kind = "uint"},
        {at = 4, size = 4, name = "lunch", kind = "uint"},
        {at = 8, size = 4, name = "dinner", kind = "uint"},
        {at = 12, size = 4, name = "supper", kind = "uint"},
    },
    TrackedFace = {
        size = 10,
        {at = 0, size = 2, name = "x", kind = "int"},
        {at = 2, size = 2, name = "y", kind = "int"},
        {at = 4, size = 2, name = "width", kind = "int", names = {[0] = "without a face"}},
        {at = 6, size = 2, name = "height", kind = "int", names = {[0] = "without a face"}},
        {at = 8, size = 1, name = "state", kind = "uint", names = {[0] = "no face", [1] = "tracking", [2] = "recognised", [3] = "failed"}},
        {at = 9, size = 1, name = "reason", kind = "uint", names = {[1] = "not registered", [2] = "not permitted"}},
    },
    RecognitionResult = {
        size = 160,
        {at = 0, size = 16, name = "userId", kind = "text"},
        {at = 16, size = 16, name = "customerId", kind = "text"},
        {at = 32, size = 100, name = "name", kind = "text"},
        {at = 132, size = 1, name = "result", kind = "uint", names = {[0] = "accepted", [1] = "no access time", [2] = "not permitted", [3] = "registered", [4] = "meal already taken"}},
        {at = 133, size = 1, name = "authMethod", kind = "uint", names = {[0] = "by card", [1] = "by face"}},
        {at = 134, size = 1, name = "level", kind = "uint", names = {[0] = "administrator", [1] = "general user", [2] = "visitor"}},
        {at = 135, size = 1, name = "rights", kind = "uint", names = {[0] = "alarm and in/out", [1] = "in/out only"}},
        {at = 136, size = 1, name = "score", kind = "uint", names = {[0] = "for a card"}},
        {at = 137, size = 1, name = "demo", kind = "uint", names = {[1] = "a demonstration, nothing is recorded"}},
        {at = 138, size = 1, name = "askAttendance", kind = "uint", names = {[1] = "the person is to choose among in, out, break and return"}},
        {at = 139, size = 1, name = "attendanceEvent", kind = "uint", names = {[16] = "in", [17] = "out", [18] = "break", [19] = "return"}},
        {at = 140, size = 6, name = "time", kind = "ClockTime"},
        {at = 146, size = 14, name = "reserved", kind = "bytes"},
    },
    _gui_user_ = {
        size = 486,
        {at = 0, size = 16, name = "userId", kind = "text"},
        {at = 16, size = 16, name = "customerId", kind = "text"},
        {at = 32, size = 100, name = "name", kind = "text"},
        {at = 132, size = 1, name = "authMethod", kind = "uint", names = {[0] = "card", [1] = "face", [2] = "face or card", [3] = "face and card", [4] = "face and ID"}},
        {at = 133, size = 1, name = "level", kind = "uint", names = {[0] = "administrator", [1] = "general user", [2] = "visitor"}},
        {at = 134, size = 1, name = "rights", kind = "uint", names = {[0] = "alarm and in/out", [1] = "in/out only"}},
        {at = 135, size = 1, name = "glasses", kind = "uint", names = {[1] = "wears glasses"}},
        {at = 136, size = 1, name = "facePresent", kind = "uint"},
        {at = 137, size = 1, name = "cardPresent", kind = "uint"},
        {at = 138, size = 1, name = "cardType", kind = "uint"},
        {at = 139, size = 1, name = "reissueNumber", kind = "uint"},
        {at = 140, size = 4, name = "nationCode", kind = "text"},
        {at = 144, size = 16, name = "cardNumber", kind = "text"},
        {at = 160, size = 128, name = "cardTemplate", kind = "text"},
        {at = 288, size = 20, name = "registrationTime", kind = "text"},
        {at = 308, size = 32, name = "timeSchedule", kind = "text"},
        {at = 340, size = 32, name = "restrictTime", kind = "text"},
        {at = 372, size = 32, name = "destination", kind = "text"},
        {at = 404, size = 64, name = "picture", kind = "text"},
        {at = 468, size = 1, name = "sensitivity", kind = "uint"},
        {at = 469, size = 1, name = "enrolMode", kind = "uint"},
        {at = 470, size = 1, name = "origin", kind = "uint", names = {[0] = "terminal", [1] = "management service", [2] = "enrolment at a kiosk"}},
        {at = 471, size = 15, name = "reserved", kind = "bytes"},
    },
    info_s = {
        size = 616,
        {at = 0, size = 486, name = "user", kind = "_gui_user_"},
        {at = 486, size = 64, name = "visiblePicture", kind = "text"},
        {at = 550, size = 64, name = "templateFile", kind = "text"},
        {at = 614, size = 1, name = "autoEnrolled", kind = "uint"},
        {at = 615, size = 1, name = "removeUserData", kind = "uint"},
    },
    UserReported = {
        size = 140,
        {at = 0, size = 16, name = "userId", kind = "text"},
        {at = 16, size = 100, name = "name", kind = "text"},
        {at = 116, size = 16, name = "cardNumber", kind = "text"},
        {at = 132, size = 1, name = "authMethod", kind = "uint", names = {[0] = "card", [1] = "face", [2] = "face or card", [3] = "face and card", [4] = "face and ID"}},
        {at = 133, size = 1, name = "level", kind = "uint", names = {[0] = "administrator", [1] = "general user", [2] = "visitor"}},
        {at = 134, size = 1, name = "autoEnrolled", kind = "uint"},
        {at = 135, size = 1, name = "removeUserData", kind = "uint"},
        {at = 136, size = 2, name = "resultCode", kind = "uint", names = {[1000] = "when it has the user", [0] = "without one"}},
        {at = 138, size = 2, name = "reserved", kind = "bytes"},
    },
    GUI_LOGDATA = {
        size = 284,
        {at = 0, size = 4, name = "number", kind = "uint"},
        {at = 4, size = 16, name = "userId", kind = "text"},
        {at = 20, size = 100, name = "name", kind = "text"},
        {at = 120, size = 16, name = "cardNumber", kind = "text"},
        {at = 136, size = 1, name = "cardType", kind = "uint"},
        {at = 137, size = 1, name = "reissueNumber", kind = "uint"},
        {at = 138, size = 1, name = "authMethod", kind = "uint", names = {[0] = "by card", [1] = "by face", [3] = "by face and card", [4] = "by face and ID"}},
        {at = 139, size = 1, name = "inOut", kind = "uint", names = {[0] = "access", [1] = "in", [2] = "out", [3] = "break", [5] = "return", [6] = "breakfast", [7] = "lunch", [8] = "dinner", [9] = "supper"}},
        {at = 140, size = 1, name = "manageMode", kind = "uint"},
        {at = 141, size = 1, name = "eventStatus", kind = "uint", names = {[0] = "refused", [1] = "accepted"}},
        {at = 142, size = 1, name = "payCount", kind = "uint"},
        {at = 143, size = 1, name = "score", kind = "uint", names = {[0] = "for a card"}},
        {at = 144, size = 1, name = "year", kind = "uint"},
        {at = 145, size = 1, name = "month", kind = "uint"},
        {at = 146, size = 1, name = "day", kind = "uint"},
        {at = 147, size = 1, name = "hour", kind = "uint"},
        {at = 148, size = 1, name = "minute", kind = "uint"},
        {at = 149, size = 1, name = "second", kind = "uint"},
        {at = 150, size = 64, name = "infraredPicture", kind = "text"},
        {at = 214, size = 64, name = "visiblePicture", kind = "text"},
        {at = 278, size = 6, name = "reserved", kind = "bytes"},
    },
    HostInfo = {
        size = 44,
        {at = 0, size = 1, name = "connected", kind = "uint"},
        {at = 1, size = 1, name = "reserved1", kind = "bytes"},
        {at = 2, size = 2, name = "port", kind = "uint"},
        {at = 4, size = 4, name = "address", kind = "ipv4"},
        {at = 8, size = 32, name = "name", kind = "text"},
        {at = 40, size = 4, name = "reserved2", kind = "bytes"},
    },
    EventReported = {
        size = 68,
        {at = 0, size = 4, name = "number", kind = "uint"},
        {at = 4, size = 16, name = "userId", kind = "text"},
        {at = 20, size = 16, name = "cardNumber", kind = "text"},
        {at = 36, size = 1, name = "authMethod", kind = "uint", names = {[0] = "card", [1] = "face", [2] = "face or card", [3] = "face and card", [4] = "face and ID"}},
        {at = 37, size = 1, name = "inOut", kind = "uint", names = {[0] = "access", [1] = "in", [2] = "out", [3] = "break", [5] = "return", [6] = "breakfast", [7] = "lunch", [8] = "dinner", [9] = "supper"}},
        {at = 38, size = 1, name = "eventStatus", kind = "uint", names = {[0] = "refused", [1] = "accepted"}},
        {at = 39, size = 1, name = "payCount", kind = "uint"},
        {at = 40, size = 1, name = "year", kind = "uint"},
        {at = 41, size = 1, name = "month", kind = "uint"},
        {at = 42, size = 1, name = "day", kind = "uint"},
        {at = 43, size = 1, name = "hour", kind = "uint"},
        {at = 44, size = 1, name = "minute", kind = "uint"},
        {at = 45, size = 1, name = "second", kind = "uint"},
        {at = 46, size = 22, name = "reserved", kind = "bytes"},
    },
    VisitorCallReport = {
        size = 136,
        {at = 0, size = 6, name = "time", kind = "ClockTime"},
        {at = 6, size = 64, name = "infraredPicture", kind = "text"},
        {at = 70, size = 64, name = "visiblePicture", kind = "text"},
        {at = 134, size = 2, name = "reserved", kind = "bytes"},
    },
    GUI_USERLOG = {
        size = 40,
        {at = 0, size = 1, name = "kind", kind = "uint", names = {[1] = "`userId` is given"}},
        {at = 1, size = 11, name = "userId", kind = "text"},
        {at = 12, size = 5, name = "reserved1", kind = "bytes"},
        {at = 17, size = 1, name = "period", kind = "uint", names = {[0] = "all", [1] = "today", [2] = "last 7 days", [3] = "last 30 days", [4] = "`from` to `to`"}},
        {at = 18, size = 1, name = "viewType", kind = "uint", names = {[0] = "all", [1] = "accepted", [2] = "refused"}},
        {at = 19, size = 1, name = "authMethod", kind = "uint", names = {[0] = "all"}},
        {at = 20, size = 4, name = "count", kind = "uint"},
        {at = 24, size = 4, name = "start", kind = "uint"},
        {at = 28, size = 4, name = "from", kind = "day"},
        {at = 32, size = 4, name = "to", kind = "day"},
        {at = 36, size = 1, name = "tag", kind = "uint"},
        {at = 37, size = 3, name = "reserved2", kind = "bytes"},
    },
}

-- What is done with these tables.

local HEADER, LONGEST = 8, 2092
local link = Proto("zel_link", "Device link of the terminal")
link.prefs.port = Pref.uint("TCP port", 15150, "Where the device controller listens")

local f = {
    code = ProtoField.uint16("zel_link.code", "Command"),
    name = ProtoField.string("zel_link.name", "Name"),
    p1 = ProtoField.uint8("zel_link.p1", "First parameter"),
    p2 = ProtoField.uint8("zel_link.p2", "Second parameter"),
    length = ProtoField.uint16("zel_link.length", "Payload length"),
    payload = ProtoField.bytes("zel_link.payload", "Payload"),
    text = ProtoField.string("zel_link.text", "Text"),
    number = ProtoField.uint32("zel_link.number", "Number"),
    skipped = ProtoField.bytes("zel_link.skipped", "Bytes that are no frame"),
}
local experts = {
    unknown = ProtoExpert.new("zel_link.unknown", "Unknown command", expert.group.UNDECODED, expert.severity.WARN),
    short = ProtoExpert.new("zel_link.short", "Shorter than its record", expert.group.MALFORMED, expert.severity.ERROR),
    rest = ProtoExpert.new("zel_link.rest", "Bytes behind what it is to hold", expert.group.PROTOCOL, expert.severity.WARN),
    no_frame = ProtoExpert.new("zel_link.no_frame", "Bytes that are no frame", expert.group.MALFORMED, expert.severity.ERROR),
}

link.experts = {experts.unknown, experts.short, experts.rest, experts.no_frame}

local makers = {
    text = ProtoField.string, ipv4 = ProtoField.ipv4, range = ProtoField.string, day = ProtoField.string,
    bytes = ProtoField.bytes,
}
local uints = {ProtoField.uint8, ProtoField.uint16, [4] = ProtoField.uint32}
local all = {}
for _, field in pairs(f) do all[#all + 1] = field end
for record, fields in pairs(records) do
    for _, field in ipairs(fields) do
        local name = "zel_link." .. record:gsub("^_", ""):gsub("_$", ""):lower() .. "." .. field.name
        local make = makers[field.kind]
        if field.kind == "uint" then
            field.proto = uints[field.size](name, field.name)
        elseif field.kind == "int" then
            field.proto = ProtoField.int16(name, field.name)
        elseif make then
            field.proto = make(name, field.name)
        end
        all[#all + 1] = field.proto
    end
end
link.fields = all

-- A text of fixed width ends with its field or with the first zero.
local function text_of(range)
    return (range:raw():match("^[^%z]*"))
end

local function shown(kind, range)
    if kind == "text" then return text_of(range) end
    if kind == "range" then
        return string.format("%02d:%02d~%02d:%02d", range(0, 1):uint(), range(1, 1):uint(), range(2, 1):uint(),
            range(3, 1):uint())
    end
    return string.format("%04d-%02d-%02d", range(0, 2):le_uint(), range(2, 1):uint(), range(3, 1):uint())
end

local function add_number(tree, field, range, names)
    local item = tree:add_le(field, range)
    local name = names and names[range:le_uint()]
    if name then item:append_text(" (" .. name .. ")") end
end

-- Adds the fields of a record from `first` on, which lies at the range's beginning.
local function add_record(tree, range, record, first)
    for _, field in ipairs(records[record]) do
        local at = field.at - first
        if at >= 0 and at + field.size <= range:len() then
            local part = range(at, field.size)
            if records[field.kind] then
                add_record(tree:add(part, field.name .. " (" .. field.kind .. ")"), part, field.kind, 0)
            elseif field.kind == "uint" or field.kind == "int" then
                add_number(tree, field.proto, part, field.names)
            elseif field.kind == "bytes" or field.kind == "ipv4" then
                tree:add(field.proto, part)
            else
                tree:add(field.proto, part, shown(field.kind, part))
            end
        end
    end
end

-- Of several things that a payload may be, the one of its length.
local function chosen(alternatives, length)
    for _, one in ipairs(alternatives) do
        if one.size == length then return one end
    end
    return alternatives[1]
end

local function add_payload(tree, range, command)
    local one = chosen(command.payload, range:len())
    if not one then
        tree:add_proto_expert_info(experts.rest)
        return
    end
    local step = one.each or one.size
    if one.kind == "text" and step == 0 then step = range:len() end
    if range:len() < step then
        tree:add_proto_expert_info(experts.short)
        return
    end
    local at = 0
    repeat
        local part = range(at, step)
        if one.record then
            add_record(tree:add(part, one.record), part, one.record, one.first)
        elseif one.kind == "uint" then
            tree:add_le(f.number, part):set_text(one.label .. ": " .. part:le_uint())
        elseif one.kind == "text" then
            tree:add(f.text, part, text_of(part)):set_text(one.label .. ": " .. text_of(part))
        end
        at = at + step
    until not one.many or at + step > range:len()
    if at < range:len() then tree:add_proto_expert_info(experts.rest) end
end

-- Adds the frame that the range holds; its name.
local function add_frame(tree, range, commands)
    local code = range(2, 2):le_uint()
    local command = commands[code] or {payload = {}}
    local name = command.name or "unknown"
    local branch = tree:add(link, range, string.format("%d %s", code, name))
    branch:add_le(f.code, range(2, 2))
    branch:add(f.name, range(2, 2), name)
    add_number(branch, f.p1, range(4, 1), command.p1)
    add_number(branch, f.p2, range(5, 1), command.p2)
    branch:add_le(f.length, range(6, 2))
    if range:len() > HEADER then
        local payload = range(HEADER)
        local item = branch:add(f.payload, payload)
        if command.name then add_payload(item, payload, command) end
    elseif #command.payload > 0 and not command.payload[1].optional then
        branch:add_proto_expert_info(experts.short)
    end
    if not command.name then branch:add_proto_expert_info(experts.unknown) end
    return name
end

-- Where a frame may begin from `at` on, as the terminal looks for it.
local function next_start(buffer, at)
    while at < buffer:len() do
        if buffer(at, 1):uint() == 0xC5 then
            if at + 1 == buffer:len() or buffer(at + 1, 1):uint() == 0x02 then break end
            at = at + 1  -- what stood in the link mark's place is gone with it
        end
        at = at + 1
    end
    return math.min(at, buffer:len())
end

function link.dissector(buffer, pinfo, tree)
    local commands = pinfo.dst_port == pinfo.match_uint and to_controller or to_terminal
    local names, at, skipped = {}, 0, 0
    local function skip()
        if skipped < at then
            tree:add(f.skipped, buffer(skipped, at - skipped)):add_proto_expert_info(experts.no_frame)
        end
    end
    pinfo.cols.protocol = "ZEL"
    while true do
        at = next_start(buffer, at)
        if at == buffer:len() then break end
        local left = buffer:len() - at
        local length = left >= HEADER and buffer(at + 6, 2):le_uint() or 0
        if length > LONGEST then
            at = at + HEADER
        elseif left < HEADER + length then
            skip()
            pinfo.desegment_offset = at
            pinfo.desegment_len = left < HEADER and DESEGMENT_ONE_MORE_SEGMENT or HEADER + length - left
            skipped = buffer:len()
            break
        else
            skip()
            names[#names + 1] = add_frame(tree, buffer(at, HEADER + length), commands)
            at = at + HEADER + length
            skipped = at
        end
    end
    skip()
    pinfo.cols.info = table.concat(names, ", ")
end

local ports = DissectorTable.get("tcp.port")
local port
function link.prefs_changed()
    if port then ports:remove(port, link) end
    port = link.prefs.port
    ports:add(port, link)
end
port = link.prefs.port
ports:add(port, link)
