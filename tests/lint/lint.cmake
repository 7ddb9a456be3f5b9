# Tests: lint/lint.
