#!/usr/bin/env bash
# Takes the pictures of the guide anew: the program on the sample feeds, in a home of its own and
# without a display.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/../../scripts/setup.sh"

install_missing "$root/scripts/packages-run.txt" "$root/scripts/packages-test.txt"
build release take_screenshots

home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
coproc feeds { exec python3 "$root/tools/sample_feed_server.py"; }
read -r address <&"${feeds[0]}"

entry() {
    printf '<dict><key>RSSValidate</key><true/><key>RSSAddressString</key><string>%s</string>' "$1"
    printf '<key>RSSNameString</key><string>%s</string><key>RSSFormat</key><integer>%s</integer></dict>' \
        "$2" "$3"
}
timer() {
    printf '<dict><key>TimerValidate</key><true/><key>TimerFireDay</key><integer>%s</integer>' "$1"
    printf '<key>TimerFireTime</key><integer>%s</integer>' "$2"
    printf '<key>TimerOperation</key><integer>%s</integer></dict>' "$3"
}
mkdir -p "$home/config/QoVelmorRSS"
cat >"$home/config/QoVelmorRSS/QoVelmorRSS.plist" <<EOF
<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict>
<key>RSSSiteAddresses</key><array>
$(entry "$address/town.rdf" "" 0)
$(entry "$address/shop.rss" "" 0)
$(entry "$address/station.atom" "" 0)
$(entry "http://127.0.0.1:9/closed.rss" "休止中のサイト" 2)
</array>
<key>TimerList</key><array>$(timer 62 540 1)$(timer 62 1080 2)$(timer 65 600 1)</array>
<key>ScrollSpeed</key><integer>2</integer>
</dict></plist>
EOF

say "Taking the pictures"
TZ=Asia/Tokyo HOME=$home XDG_CONFIG_HOME=$home/config QT_QPA_PLATFORM=offscreen QOVELMORRSS_SERIAL_DEVICES=/dev/ttyUSB0 \
    "$root/build/take_screenshots" "$root/docs/screenshots"
