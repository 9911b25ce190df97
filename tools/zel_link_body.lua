-- What is done with these tables.

local HEADER, LONGEST = 8, 2092
local link = Proto("zel_link", "Device link of the terminal")
link.prefs.port = Pref.uint("TCP port", 15150, "Where the device controller listens")

local f = {
    code = ProtoField.uint16("zel_link.code", "Command"),
    name = ProtoField.string("zel_link.name", "Name"),
    p1 = ProtoField.uint8("zel_link.p1", "First parameter"),
    p2 = ProtoField.uint8("zel_link.p2", "Second parameter"),
    length = ProtoField.uint16("zel_link.length", "Payload length"),
    payload = ProtoField.bytes("zel_link.payload", "Payload"),
    text = ProtoField.string("zel_link.text", "Text"),
    number = ProtoField.uint32("zel_link.number", "Number"),
    skipped = ProtoField.bytes("zel_link.skipped", "Bytes that are no frame"),
}
local experts = {
    unknown = ProtoExpert.new("zel_link.unknown", "Unknown command", expert.group.UNDECODED, expert.severity.WARN),
    short = ProtoExpert.new("zel_link.short", "Shorter than its record", expert.group.MALFORMED, expert.severity.ERROR),
    rest = ProtoExpert.new("zel_link.rest", "Bytes behind what it is to hold", expert.group.PROTOCOL, expert.severity.WARN),
    no_frame = ProtoExpert.new("zel_link.no_frame", "Bytes that are no frame", expert.group.MALFORMED, expert.severity.ERROR),
}

link.experts = {experts.unknown, experts.short, experts.rest, experts.no_frame}

local makers = {
    text = ProtoField.string, ipv4 = ProtoField.ipv4, range = ProtoField.string, day = ProtoField.string,
    bytes = ProtoField.bytes,
}
local uints = {ProtoField.uint8, ProtoField.uint16, [4] = ProtoField.uint32}
local all = {}
for _, field in pairs(f) do all[#all + 1] = field end
for record, fields in pairs(records) do
    for _, field in ipairs(fields) do
        local name = "zel_link." .. record:gsub("^_", ""):gsub("_$", ""):lower() .. "." .. field.name
        local make = makers[field.kind]
        if field.kind == "uint" then
            field.proto = uints[field.size](name, field.name)
        elseif field.kind == "int" then
            field.proto = ProtoField.int16(name, field.name)
        elseif make then
            field.proto = make(name, field.name)
        end
        all[#all + 1] = field.proto
    end
end
link.fields = all

-- A text of fixed width ends with its field or with the first zero.
local function text_of(range)
    return (range:raw():match("^[^%z]*"))
end

local function shown(kind, range)
    if kind == "text" then return text_of(range) end
    if kind == "range" then
        return string.format("%02d:%02d~%02d:%02d", range(0, 1):uint(), range(1, 1):uint(), range(2, 1):uint(),
            range(3, 1):uint())
    end
    return string.format("%04d-%02d-%02d", range(0, 2):le_uint(), range(2, 1):uint(), range(3, 1):uint())
end

local function add_number(tree, field, range, names)
    local item = tree:add_le(field, range)
    local name = names and names[range:le_uint()]
    if name then item:append_text(" (" .. name .. ")") end
end

-- Adds the fields of a record from `first` on, which lies at the range's beginning.
local function add_record(tree, range, record, first)
    for _, field in ipairs(records[record]) do
        local at = field.at - first
        if at >= 0 and at + field.size <= range:len() then
            local part = range(at, field.size)
            if records[field.kind] then
                add_record(tree:add(part, field.name .. " (" .. field.kind .. ")"), part, field.kind, 0)
            elseif field.kind == "uint" or field.kind == "int" then
                add_number(tree, field.proto, part, field.names)
            elseif field.kind == "bytes" or field.kind == "ipv4" then
                tree:add(field.proto, part)
            else
                tree:add(field.proto, part, shown(field.kind, part))
            end
        end
    end
end

-- Of several things that a payload may be, the one of its length.
local function chosen(alternatives, length)
    for _, one in ipairs(alternatives) do
        if one.size == length then return one end
    end
    return alternatives[1]
end

local function add_payload(tree, range, command)
    local one = chosen(command.payload, range:len())
    if not one then
        tree:add_proto_expert_info(experts.rest)
        return
    end
    local step = one.each or one.size
    if one.kind == "text" and step == 0 then step = range:len() end
    if range:len() < step then
        tree:add_proto_expert_info(experts.short)
        return
    end
    local at = 0
    repeat
        local part = range(at, step)
        if one.record then
            add_record(tree:add(part, one.record), part, one.record, one.first)
        elseif one.kind == "uint" then
            tree:add_le(f.number, part):set_text(one.label .. ": " .. part:le_uint())
        elseif one.kind == "text" then
            tree:add(f.text, part, text_of(part)):set_text(one.label .. ": " .. text_of(part))
        end
        at = at + step
    until not one.many or at + step > range:len()
    if at < range:len() then tree:add_proto_expert_info(experts.rest) end
end

-- Adds the frame that the range holds; its name.
local function add_frame(tree, range, commands)
    local code = range(2, 2):le_uint()
    local command = commands[code] or {payload = {}}
    local name = command.name or "unknown"
    local branch = tree:add(link, range, string.format("%d %s", code, name))
    branch:add_le(f.code, range(2, 2))
    branch:add(f.name, range(2, 2), name)
    add_number(branch, f.p1, range(4, 1), command.p1)
    add_number(branch, f.p2, range(5, 1), command.p2)
    branch:add_le(f.length, range(6, 2))
    if range:len() > HEADER then
        local payload = range(HEADER)
        local item = branch:add(f.payload, payload)
        if command.name then add_payload(item, payload, command) end
    elseif #command.payload > 0 and not command.payload[1].optional then
        branch:add_proto_expert_info(experts.short)
    end
    if not command.name then branch:add_proto_expert_info(experts.unknown) end
    return name
end

-- Where a frame may begin from `at` on, as the terminal looks for it.
local function next_start(buffer, at)
    while at < buffer:len() do
        if buffer(at, 1):uint() == 0xC5 then
            if at + 1 == buffer:len() or buffer(at + 1, 1):uint() == 0x02 then break end
            at = at + 1  -- what stood in the link mark's place is gone with it
        end
        at = at + 1
    end
    return math.min(at, buffer:len())
end

function link.dissector(buffer, pinfo, tree)
    local commands = pinfo.dst_port == pinfo.match_uint and to_controller or to_terminal
    local names, at, skipped = {}, 0, 0
    local function skip()
        if skipped < at then
            tree:add(f.skipped, buffer(skipped, at - skipped)):add_proto_expert_info(experts.no_frame)
        end
    end
    pinfo.cols.protocol = "ZEL"
    while true do
        at = next_start(buffer, at)
        if at == buffer:len() then break end
        local left = buffer:len() - at
        local length = left >= HEADER and buffer(at + 6, 2):le_uint() or 0
        if length > LONGEST then
            at = at + HEADER
        elseif left < HEADER + length then
            skip()
            pinfo.desegment_offset = at
            pinfo.desegment_len = left < HEADER and DESEGMENT_ONE_MORE_SEGMENT or HEADER + length - left
            skipped = buffer:len()
            break
        else
            skip()
            names[#names + 1] = add_frame(tree, buffer(at, HEADER + length), commands)
            at = at + HEADER + length
            skipped = at
        end
    end
    skip()
    pinfo.cols.info = table.concat(names, ", ")
end

local ports = DissectorTable.get("tcp.port")
local port
function link.prefs_changed()
    if port then ports:remove(port, link) end
    port = link.prefs.port
    ports:add(port, link)
end
port = link.prefs.port
ports:add(port, link)
