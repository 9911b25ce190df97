# The record tables of a page of docs/ as FIELD(record, member, offset, size, like), so that the
# compiler can say what is true; `like` is the field of another record that means the same.
/^### `/ {
    split($0, part, "`")
    record = part[2]
}
/^\| [0-9]+ \| [0-9]+ \| `/ {
    split($0, cell, "|")
    split(cell[4], part, "`")
    like = ""
    if (cell[5] ~ /^ as (in the event|reported) *$/)
        like = part[2]
    else if (cell[5] ~ /^ as `/) {
        split(cell[5], other, "`")
        like = other[2]
    }
    printf "FIELD(%s, %s, %d, %d, \"%s\")\n", record, part[2], cell[2], cell[3], like
}
