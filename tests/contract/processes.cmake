# Processes, threads, time, folders, log, case mapping and notifications: adapters and the fakes beside them.
orvane_add_test(NAME contract_processes LABEL contract
  SOURCES
    contract/processes/ClockContractTest.cpp
    contract/processes/MainThreadContractTest.cpp
    contract/processes/PosixBlockedSignalsTest.cpp
    contract/processes/PosixProcessLauncherTest.cpp
    contract/processes/PosixSmallFileTest.cpp
    contract/processes/PosixStopSignalsTest.cpp
    contract/processes/PosixUserFoldersTest.cpp
    contract/processes/ProcessLauncherContractTest.cpp
    contract/processes/SystemLogContractTest.cpp
    contract/processes/TextCaseContractTest.cpp
    contract/processes/ThreadLauncherContractTest.cpp
  LIBRARIES platform_posix)

orvane_add_test(NAME contract_notifications LABEL contract
  SOURCES
    contract/processes/DistributedNotificationsContractTest.cpp
    contract/processes/NotificationGateTest.cpp
    contract/processes/SdBusNotificationsTest.cpp
  LIBRARIES platform_dbus)
