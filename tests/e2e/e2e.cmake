# Tests: e2e/e2e.
