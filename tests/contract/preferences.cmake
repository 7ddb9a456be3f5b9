# Tests: contract/preferences.
