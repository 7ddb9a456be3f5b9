# Sources of the core that belong to the status-bar menu.
