# Shared set-up of the Tcl package's test scripts: tcltest in this one
# process, the package from the build tree (TCLLIBPATH), and an exit status
# that tells ctest about failed tests.
package require tcltest 2.5
namespace import ::tcltest::*
tcltest::configure -singleproc 1 -verbose {body error}
package require boardlib

set ::srcdir $::env(BOARDLIB_SOURCE_DIR)

# Runs a script in a fresh tclsh with the package loaded and returns what it
# printed, standard error included: the library's warnings go there.
proc runChild {script} {
    set pre "package require boardlib\n"
    return [exec [info nameofexecutable] << "$pre$script\n" 2>@1]
}

proc finish {} {
    # cleanupTests resets the counters, so read them first.
    set failed $::tcltest::numTests(Failed)
    set total $::tcltest::numTests(Total)
    tcltest::cleanupTests
    exit [expr {$failed > 0 || $total == 0}]
}
