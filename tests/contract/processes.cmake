# Tests: contract/processes.
