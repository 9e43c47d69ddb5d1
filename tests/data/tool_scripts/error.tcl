puts [llength [get_boards]]
get_property NO_SUCH [lindex [get_boards] 0]
