# What the fields of the settings record may hold, as {"field", "values"}, from its table in
# docs/device-link.md.
/^##/ { settings = /^### `_gui_menu_`/ }
settings && /^\| [0-9]+ \| [0-9]+ \| `/ {
    split($0, cell, " \\| ")
    gsub(/`/, "", cell[3])
    gsub(/`| \|$/, "", cell[4])
    gsub(/"/, "\\\"", cell[4])
    printf "{\"%s\", \"%s\"},\n", cell[3], cell[4]
}
