# Sources of platform_posix: files.
