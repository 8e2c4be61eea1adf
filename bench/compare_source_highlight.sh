#!/bin/sh
# Times GNU source-highlight and `talvor color --html` on the same large inputs, in one run, and
# prints both throughputs and their ratio (the goal is talvor at least 50 times faster).
#
# usage: bench/compare_source_highlight.sh [TALVOR_BINARY]
#   TALVOR_BINARY  default: build/tools/talvor/talvor under the project root
#   TALVOR_CORPUS  corpus folder (default: ../shared/corpus beside the project)
#   TALVOR_RUNS    runs of talvor per input, the best one counts (default 3)
#
# The inputs are those of bench/syntax_bench.cpp: the VBScript corpus as Basic and the C++ files
# of the language corpus, the files in byte order of their paths, each followed by a line feed
# if it lacks one, repeated whole until the text reaches 20 MiB.
set -eu

root=$(cd "$(dirname "$0")/.." && pwd)
talvor=${1:-$root/build/tools/talvor/talvor}
corpus=${TALVOR_CORPUS:-$root/../shared/corpus}
runs=${TALVOR_RUNS:-3}
target=$((20 * 1024 * 1024))

if ! command -v source-highlight >/dev/null 2>&1; then
    echo "compare: GNU source-highlight is not installed; it is the Debian package" \
         "'source-highlight' (apt-get install source-highlight)" >&2
    exit 1
fi
if [ ! -x "$talvor" ]; then
    echo "compare: no talvor program at $talvor (build it, or give its path)" >&2
    exit 1
fi
for folder in "$corpus/vbscript" "$corpus/languages/8-cpp"; do
    if [ ! -d "$folder" ]; then
        echo "compare: corpus folder $folder is missing" >&2
        exit 1
    fi
done

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# make_input OUT FILE...: the files once, each ending in a line feed, repeated up to the target.
make_input() {
    out=$1
    shift
    for file in "$@"; do
        cat "$file"
        if [ -n "$(tail -c 1 "$file")" ]; then
            echo
        fi
    done >"$work/once"
    : >"$out"
    while [ "$(wc -c <"$out")" -lt "$target" ]; do
        cat "$work/once" >>"$out"
    done
}

basic_files=$(find "$corpus/vbscript" -maxdepth 1 -type f | grep -i '\.vbs$' | LC_ALL=C sort)
cpp_files=$(find "$corpus/languages/8-cpp" -maxdepth 1 -type f \( -name '*.cc' -o -name '*.h' \) |
    LC_ALL=C sort)
# shellcheck disable=SC2086 # the lists are path names without blanks, one per word
make_input "$work/basic.vbs" $basic_files
# shellcheck disable=SC2086
make_input "$work/cpp.cpp" $cpp_files

now() { date +%s.%N; }

# calc EXPRESSION: the value of an awk expression.
calc() { awk "BEGIN { print $1 }"; }

# seconds COMMAND...: wall-clock seconds of one run.
seconds() {
    start=$(now)
    "$@"
    end=$(now)
    calc "$end - $start"
}

best_talvor() {
    input=$1
    language=$2
    best=""
    i=0
    while [ "$i" -lt "$runs" ]; do
        # shellcheck disable=SC2016 # the inner shell expands its own arguments
        t=$(seconds sh -c '"$1" --code-page 1252 color --html --language "$2" "$3" >"$4"' \
            sh "$talvor" "$language" "$input" "$work/talvor.html")
        if [ -z "$best" ] || [ "$(calc "$t < $best")" -eq 1 ]; then
            best=$t
        fi
        i=$((i + 1))
    done
    if [ "$(tail -c 8 "$work/talvor.html")" != "</html>" ]; then
        echo "compare: talvor did not write a complete page" >&2
        exit 2
    fi
    echo "$best"
}

status=0
printf '%-6s %10s %16s %16s %8s\n' input MiB "source-highlight" "talvor --html" ratio
for pair in "basic.vbs vbscript Basic" "cpp.cpp cpp C++"; do
    # shellcheck disable=SC2086
    set -- $pair
    input=$work/$1
    mib=$(calc "$(wc -c <"$input") / 1048576")
    highlight=$(seconds source-highlight -s "$2" -f html -i "$input" -o "$work/highlight.html")
    ours=$(best_talvor "$input" "$3")
    ratio=$(calc "$highlight / $ours")
    printf '%-6s %10.1f %11.2f MB/s %11.1f MB/s %7.1fx\n' "$3" "$mib" \
        "$(calc "$mib / $highlight")" "$(calc "$mib / $ours")" "$ratio"
    if [ "$(calc "$ratio < 50")" -eq 1 ]; then
        status=3
    fi
done
if [ "$status" -ne 0 ]; then
    echo "goal not met: talvor is less than 50 times faster on at least one input"
else
    echo "goal met: talvor is at least 50 times faster on both inputs"
fi
exit "$status"
