# Sources of platform_posix: preferences.
