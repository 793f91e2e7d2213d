# compare.awk RECORDED NOW: prints the ratio of each count to the bare program's, and ends with 1 when one has grown by
# more than 5 %, then with the functions that grew most.
function growth(what, name) { return now[what, name] - recorded[what, name] * scale[what] }

$1 == "total" && FILENAME == ARGV[1] { bare[$2] = $3; before[$2] = $4 / $3; next }
$1 == "total" {
    order[++count] = $2
    scale[$2] = $3 / bare[$2] # another library, or compiler, changes both
    after[$2] = $4 / $3
    next
}
{
    what = $1
    number = $2
    sub(/^[^ ]+ [^ ]+ /, "")
    if (FILENAME == ARGV[1]) {
        recorded[what, $0] = number
    } else {
        now[what, $0] = number
        names[what, ++functions[what]] = $0
    }
}
END {
    for (i = 1; i <= count; ++i) {
        what = order[i]
        change = (after[what] / before[what] - 1) * 100
        printf "%-8s %.3f of the bare program's instructions, recorded %.3f: %+.1f %%\n", what, after[what], before[what], change
        if (change <= 5)
            continue
        failed = 1
        for (shown = 0; shown < 8; ++shown) {
            best = 0
            for (n = 1; n <= functions[what]; ++n)
                if (!((what, n) in told) && growth(what, names[what, n]) > (best ? growth(what, names[what, best]) : 0))
                    best = n
            if (!best)
                break
            told[what, best] = 1
            printf "    %+12d %s\n", growth(what, names[what, best]), names[what, best]
        }
    }
    exit failed
}
