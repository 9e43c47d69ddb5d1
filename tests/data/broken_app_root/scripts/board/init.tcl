# A board script that fails, for the tests of its loading.
error "broken on purpose"
