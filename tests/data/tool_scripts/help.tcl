puts [help]
help extra
