# Draws the keys of a take from the table that `mirvane-stage record --out-curves` wrote:
#   gnuplot -e "table='out/take.csv'; picture='docs/images/take_curves.svg'" tools/plot_curves.gp
# The table holds one object. The plot leaves out its first key, which was there before the take,
# and qw, which follows from the others.
if (!exists("table")) table = 'out/take.csv'
if (!exists("picture")) picture = 'out/take_curves.svg'

set datafile separator comma
# Columns: node, time, tx, ty, tz, qx, qy, qz, qw. Positions are drawn from where they began.
array first[5]
do for [n=3:5] {
    stats table every ::2::2 using n nooutput
    first[n] = STATS_min
}

set terminal svg size 900,560 font 'sans-serif,13' background 'white'
set output picture
set multiplot layout 2,1
set border 3 lc rgb '#808080'
set tics nomirror tc rgb '#404040'
set grid lc rgb '#e0e0e0' lt 1
set key outside right center Left reverse
set lmargin 10
set rmargin 12
set style line 1 lc rgb '#c0392b' lw 1.5 pt 7 ps 0.3
set style line 2 lc rgb '#27ae60' lw 1.5 pt 7 ps 0.3
set style line 3 lc rgb '#2d6cc0' lw 1.5 pt 7 ps 0.3
name(n) = word('tx ty tz qx qy qz', n - 2)

set ylabel 'position, from the first frame'
plot for [n=3:5] table every ::2 using 2:(column(n) - first[n]) \
    with linespoints ls n - 2 title name(n)
set ylabel 'rotation'
set xlabel 'time (s)'
plot for [n=6:8] table every ::2 using 2:n with linespoints ls n - 5 title name(n)
unset multiplot
