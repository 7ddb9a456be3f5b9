# Tests: unit/propertylist.
