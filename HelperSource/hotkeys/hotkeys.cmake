# Sources of the core that belong to the hot key.
