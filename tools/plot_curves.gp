# Draws the keys of a take from the table that `mirvane-stage record --out-curves` wrote:
#   gnuplot -e "table='out/take.csv'; picture='docs/images/take_curves.svg'" tools/plot_curves.gp
# A name in `node` picks one object of several: node='Camera'.
if (!exists("table")) table = 'out/take.csv'
if (!exists("picture")) picture = 'out/take_curves.svg'
if (!exists("node")) node = ''

set terminal svg size 900,560 font 'sans-serif,12' background 'white'
set output picture
set datafile separator comma
set multiplot layout 2,1
set grid lc rgb '#e0e0e0'
set key outside right top Left reverse
set lmargin 9
set rmargin 12
set style line 1 lc rgb '#c0392b' lw 1.5 pt 7 ps 0.25
set style line 2 lc rgb '#27ae60' lw 1.5 pt 7 ps 0.25
set style line 3 lc rgb '#2d6cc0' lw 1.5 pt 7 ps 0.25
set style line 4 lc rgb '#7f8c8d' lw 1.5 pt 7 ps 0.25

name(n) = word('tx ty tz qx qy qz qw', n - 2)
at(n) = (node eq '' || strcol(1) eq node) ? column(2) : NaN

set ylabel 'position'
plot for [n=3:5] table every ::1 using (at(0)):n with linespoints ls n - 2 title name(n)
set ylabel 'rotation'
set xlabel 'time (s)'
plot for [n=6:9] table every ::1 using (at(0)):n with linespoints ls n - 5 title name(n)
unset multiplot
