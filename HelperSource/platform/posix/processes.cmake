# Sources of platform_posix: processes.
