#!/usr/bin/env bash
# Renders the pictures of the terminal and links its fonts.
#   make_assets.sh SOURCES IMAGE_FOLDER STAMP [BRAND]
# SOURCES holds the SVG files and pictures.txt, IMAGE_FOLDER becomes the device's /zel1/image. Only
# what is older than its source is made again; pictures no longer listed are removed. STAMP is
# touched when all is done, and STAMP.d tells the build what it was made from.
#
# BRAND is a maker's folder: the colours of its theme.json take the place of those of ui/theme.h in
# every picture, an SVG file of its images/ that of ours, and images/logo.svg is the maker's logo.
set -euo pipefail
export LC_ALL=C

script=$(realpath "$0")
sources=$(realpath "$1")
mkdir -p "$2/img/fonts"
image=$(realpath "$2")
stamp=$3
brand=${4:+$(realpath "$4")}
theme=$brand/theme.json
list=$sources/pictures.txt
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

glyph='#d9dfe9'  # the one colour of every glyph, replaced in its variants
declare -A colours=(
    [pressed]='#5effd7' [accent]='#5effd7' [dark]='#06231c' [disabled]='#66798f' [danger]='#ff8a8a'
)

# recolouring: a sed program that puts the brand's colours in. Two steps, since a new colour may be
# another one's old one.
recolouring() {
    local name old new marks='' colors=''
    while read -r name old; do
        new=$(sed -nE "s/.*\"${name,}\" *: *\"#([0-9a-fA-F]{6})\".*/\1/p" "$theme")
        [[ -n $new ]] || continue
        marks+="s/#$old/@$name@/gI;"
        colors+="s/@$name@/#$new/g;"
    done < <(sed -nE 's/^ *X\((\w+), 0xff(\w{6})\).*/\1 \2/p' "$(dirname "$script")/../ui/theme.h")
    echo "$marks$colors"
}
recolour=
[[ ! -f $theme ]] || recolour=$(recolouring)

# Another brand makes everything out of date.
fresh=
[[ $brand$recolour == "$(cat "$stamp.brand" 2>/dev/null)" ]] || fresh=yes

# source_of NAME: the SVG file of that name.
source_of() {
    if [[ -n $brand && -f $brand/images/$1.svg ]]; then
        echo "$brand/images/$1.svg"
    else
        echo "$sources/$1.svg"
    fi
}

declare -A used         # the SVG files
jobs=$scratch/jobs      # per line: SVG file, sed program, width, height, picture
wanted=$scratch/wanted  # every file that belongs into the image folder
touch "$jobs" "$wanted"

# is_current PICTURE SOURCE...: whether the picture is newer than all it is made from.
is_current() {
    local picture=$1 source
    [[ -z $fresh ]] || return 1
    shift
    for source in "$@" "$list" "$script"; do
        [[ $picture -nt $source ]] || return 1
    done
}

# plan NAME SVG SED_PROGRAM WIDTHxHEIGHT [ALL_OF_SED]: notes the picture and, where it is out of
# date, its job; the brand's colours come last, or not at all.
plan() {
    echo "$1" >>"$wanted"
    used[$2]=1
    is_current "$image/$1" "$2" ||
        printf '%s\0' "$2" "${5-$3;$recolour}" "${4%x*}" "${4#*x}" "$image/$1" >>"$jobs"
}

# plan_listed FOLDER SIZE NAME: a line of the list; the name tells source and colour.
plan_listed() {
    local base=$3 change='' part
    while [[ ! -f $(source_of "$base") ]]; do
        part=${base##*_}
        if [[ $part == "$base" ]]; then
            echo "pictures.txt: nothing to make $3 from" >&2
            exit 1
        elif [[ -n ${colours[$part]:-} ]]; then
            change="s/$glyph/${colours[$part]}/g"
        elif [[ $part != "${2%x*}" ]]; then
            echo "pictures.txt: $3 is neither a colour variant nor ${2%x*} pixels wide" >&2
            exit 1
        fi
        base=${base%_*}
    done
    plan "$1/$3.png" "$(source_of "$base")" "$change" "$2"
}

while read -r folder size names; do
    [[ -z $folder || $folder == '#' ]] && continue
    for name in $names; do
        plan_listed "$folder" "$size" "$name"
    done
done <"$list"

# The enrolment ring: the arc's length is the first value of its dash pattern.
for percent in {0..100}; do
    length=$((104301 * percent))
    arc=$(printf 's/dasharray="[0-9.]* /dasharray="%d.%04d /' $((length / 10000)) $((length % 10000)))
    # A round cap would leave a dot where nothing is done yet.
    ((percent > 0)) || arc='/dasharray="/d'
    plan "./percent_$percent.png" "$(source_of percent)" "$arc" 360x360
done

for turn in {0..7}; do
    plan "img/wait_$turn.png" "$(source_of wait)" \
        "s/<g /<g transform=\"rotate($((turn * 45)) 36 36)\" /" 72x72
done

[[ -z $brand || ! -f $brand/images/logo.svg ]] ||
    plan ./logo.png "$brand/images/logo.svg" '' 240x72 ''

render() {
    sed -e "$2" "$1" | rsvg-convert --width "$3" --height "$4" --output "$5.new"
    mv "$5.new" "$5"
}
export -f render
xargs --null --no-run-if-empty --max-args=5 --max-procs="$(nproc)" \
    bash -euo pipefail -c 'render "$@"' render <"$jobs"

# Two frames, 900 ms each, for ever.
for name in noglasses glasses; do
    echo "./$name.gif" >>"$wanted"
    frames=("$(source_of "${name}_1")" "$(source_of "${name}_2")")
    for frame in "${frames[@]}"; do used[$frame]=1; done
    is_current "$image/$name.gif" "${frames[@]}" && continue
    for frame in 1 2; do
        sed "$recolour" "${frames[frame - 1]}" | rsvg-convert --output "$scratch/$name$frame.png"
    done
    convert -delay 90 -loop 0 "$scratch/$name"[12].png "$image/$name.gif"
done

sed 's|^\./||' "$wanted" | sort >"$scratch/kept"
(cd "$image" && find . -type f -printf '%P\n' | sort | comm -13 "$scratch/kept" - | xargs -r rm --)

# The device's names for the fonts. The collections hold the Korean and the Japanese faces alike,
# so they also stand in for the Japanese display fonts.
noto=/usr/share/fonts/opentype/noto
link_font() { ln -sfn "$1" "$image/img/fonts/$2"; }
for weight in Light Regular Medium Bold; do
    link_font "$noto/NotoSansCJK-$weight.ttc" "NotoSansCJKkr-$weight.otf"
done
link_font /usr/share/fonts/truetype/noto/NotoSerif-Bold.ttf NotoSerif-Bold.ttf
link_font "$noto/NotoSansCJK-Medium.ttc" logotypejp_mp_m_1.1.ttf
link_font "$noto/NotoSansCJK-Bold.ttc" logotypejp_mp_b_1.1.ttf

{
    printf '%s:' "${stamp// /\\ }"
    for source in "${!used[@]}"; do printf ' %s' "${source// /\\ }"; done
    echo
} >"$stamp.d"
printf '%s' "$brand$recolour" >"$stamp.brand"
touch "$stamp"
