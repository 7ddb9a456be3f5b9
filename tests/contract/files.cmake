# Tests: contract/files.
