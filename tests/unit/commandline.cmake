# Tests: unit/commandline.
