# Runs PROGRAM on the display of the caller, waits for its box, keeps a picture of the screen, and answers by a key. The
# program has to wait until then, and to end after it.
#   message_box_test.sh PROGRAM PICTURE
set -eu
program=$1
picture=$2

fail() {
    echo "$*" >&2
    exit 1
}

# Position and size of the box, found by its title: "200x106+300+164".
box() {
    xwininfo -root -tree | sed -n 's/.*"Spindle": ()  \([0-9]*x[0-9]*+[0-9]*+[0-9]*\) .*/\1/p'
}

# Without the fonts (xfonts-base) SDL has nothing to write with, and the library shows the box in its own way.
if ! xlsfonts | grep -q iso10646; then
    echo "skipped: the display has no fonts" >&2
    exit 77
fi

rm -f "$picture"
LC_ALL=C.UTF-8 "$program" &
child=$!
trap 'kill "$child" 2>/dev/null || true' EXIT

tries=0
until [ -n "$(box)" ]; do
    tries=$((tries + 1))
    [ "$tries" -lt 150 ] || fail "no box with this title has come"
    sleep 0.2
done
sleep 1 # until it is drawn
import -window root "$picture"
[ "$(identify -format %k "$picture")" -gt 2 ] || fail "the screen is empty"
kill -0 "$child" || fail "the program did not wait for the answer"

# Without a window manager the keys go to the window below the pointer.
position=$(box)
position=${position#*+}
xdotool mousemove "$((${position%+*} + 10))" "$((${position#*+} + 10))" key Return

tries=0
while kill -0 "$child" 2>/dev/null; do
    tries=$((tries + 1))
    [ "$tries" -lt 100 ] || fail "the program goes on waiting after the answer"
    sleep 0.2
done
wait "$child" || fail "the program reports a failure"
trap - EXIT
