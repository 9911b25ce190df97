# The record tables of docs/device-link.md as FIELD(record, member, offset, size), so that the
# compiler can say what is true.
/^### `/ {
    split($0, part, "`")
    record = part[2]
}
/^\| [0-9]+ \| [0-9]+ \| `/ {
    split($0, cell, "|")
    split(cell[4], part, "`")
    printf "FIELD(%s, %s, %d, %d)\n", record, part[2], cell[2], cell[3]
}
