# The board commands written in Tcl. The library sources this file once per
# project, in the interpreter of the board commands, when the integrated
# board flow is on (project.enableBITabFlow); its directory is the working
# directory meanwhile, so that further files can be sourced by their names.

# get_integrated_boards ?PATTERN?: the integrated boards of the project, made
# in memory by create_integrated_board and so without a file of their own.
proc get_integrated_boards {{pattern *}} {
    set boards {}
    foreach board [get_boards -quiet $pattern] {
        if {[get_property FILE_NAME $board] eq ""} {
            lappend boards $board
        }
    }
    return $boards
}
