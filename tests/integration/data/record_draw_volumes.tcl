# Volumes of the solids of a file by DRAW, the test harness of Open CASCADE, for draw_volumes.tsv:
#   FILE=... NAME=... occt-draw-7.6 -b -f record_draw_volumes.tcl
# FILE is read, NAME is what the table calls it. Each line of the answer is one solid: its volume
# to a relative 1e-7, and the one that DRAW finds without a limit. Equal solids are one line of the
# table, with their number.
pload MODELING XDE
if {[file extension $env(FILE)] == ".brep"} {restore $env(FILE) a} else {testreadstep $env(FILE) a}
compound a all
proc volume {properties} {
    regexp {Mass\s*:\s*([-+0-9.eE]+)} $properties found number
    return $number
}
foreach solid [explode all so] {
    puts "$env(NAME)\t1\t[volume [vprops $solid 1e-7 -full]]\t[volume [vprops $solid -full]]"
}
