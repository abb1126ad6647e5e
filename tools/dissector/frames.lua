-- What Wireshark shows: its fields and preferences, and frames with what they carry.

local proto = Proto("commonground", "Commonground")

local prefs = proto.prefs
local MOST_PORT = 65535
prefs.tcp_ports = Pref.range("TCP ports", "", "TCP ports whose connections carry packets of commands", MOST_PORT)
prefs.udp_ports = Pref.range("UDP ports", "", "UDP ports whose datagrams are frames of commands", MOST_PORT)
prefs.width = Pref.enum("Characters outside the basic plane", 16,
    "As a host with 16-bit or with 32-bit wide characters reads them. Both written forms of text are always read.",
    {{1, "16-bit host", 16}, {2, "32-bit host", 32}}, true)
prefs.most_packet = Pref.uint("Largest packet", MOST_PACKET,
    "A larger packet length is reported, and the rest of its segment is skipped")
prefs.pack_types = Pref.string("Types of pack messages", "",
    "The message of each type in an envelope, such as: CCmdHomePackRequest 7 HomePack_StartGame_Request, ...")

-- The fields that Wireshark knows. Those of one name and type are one.
local all_fields, known_fields = {}, {}

local function field_of(kind, filter, name, ...)
    filter = "commonground." .. filter:gsub("[^%w_.]", "_")
    local key = kind .. " " .. filter
    if not known_fields[key] then
        known_fields[key] = ProtoField[kind](filter, name, ...)
        all_fields[#all_fields + 1] = known_fields[key]
    end
    return known_fields[key]
end

local WIRESHARK_KIND = {
    float = "float", text = "string", uuid = "bytes", node = "bytes", bytes = "bytes", buffer = "bytes",
    payload = "bytes", record = "none", bool = "bool", int8 = "int8", uint8 = "uint8", int16 = "int16",
    uint16 = "uint16", int32 = "int32", uint32 = "uint32",
}

-- Values are filtered by the class and the member; a count, a key and the parts of a pair have names of their own.
local function name_fields(filter, name, field)
    local kind = field[2]
    if kind == "list" then
        field.hf = field_of("int32", filter .. ".count", name, base.DEC)
        if field.key then
            name_fields(filter .. ".key", name .. " key", field.key)
        end
        name_fields(filter, name, field.of)
    elseif kind == "count" then
        field.hf = field_of("int32", filter .. ".count", name .. " (count)", base.DEC)
    elseif kind == "array" then
        field.hf = field_of("none", filter .. ".array", name)
        name_fields(filter, name, field.of)
    elseif kind == "pair" then
        field.hf = field_of("none", filter .. ".pair", name)
        name_fields(filter .. ".first", name .. " first", field.of[1])
        name_fields(filter .. ".second", name .. " second", field.of[2])
    elseif WIRESHARK_KIND[kind] then
        field.hf = field_of(WIRESHARK_KIND[kind], filter, name)
        field.is_record = kind == "record"
    end
end

for _, field in ipairs(HEAD) do
    name_fields("head." .. field[1], field[1], field)
end
local by_id = {}
for _, name in ipairs(class_names) do
    local class = classes[name]
    class.name = name
    for _, field in ipairs(class.fields) do
        if field[2] == "table" then
            local first = name .. "." .. field.of[1][1]
            field.hf = field_of("none", first .. ".table", field.of[1][1])
            for _, column in ipairs(field.of) do
                column.number_hf = field_of("int32", first .. ".rows", "rows", base.DEC)
                name_fields(name .. "." .. column[1], column[1], column)
            end
        elseif field[2] ~= "head" then
            name_fields(name .. "." .. field[1], field[1], field)
        end
    end
    if class.id then
        by_id[class.id] = by_id[class.id] or {}
        table.insert(by_id[class.id], class)
    end
end

local hf = {
    length = field_of("uint32", "length", "Packet length", base.DEC),
    id = field_of("uint16", "id", "Command id", base.HEX),
    class = field_of("string", "class", "Class"),
    size_word = field_of("uint32", "size_word", "Size word", base.HEX),
    size = field_of("uint32", "size", "Payload size", base.DEC),
    from = field_of("bytes", "from", "From address"),
    target = field_of("bytes", "target", "Target address"),
    payload = field_of("bytes", "payload", "Payload"),
    greeting = field_of("bytes", "session.greeting", "Greeting"),
    message = field_of("string", "session.message", "Session message"),
    session_from = field_of("bytes", "session.from", "From address"),
    session_target = field_of("bytes", "session.target", "Target address"),
}
proto.fields = all_fields

local ex = {
    stopped = ProtoExpert.new("commonground.stopped", "Decoding stopped", expert.group.MALFORMED,
        expert.severity.ERROR),
    left = ProtoExpert.new("commonground.left", "Bytes after the last field", expert.group.MALFORMED,
        expert.severity.ERROR),
    frame = ProtoExpert.new("commonground.bad_frame", "Malformed frame", expert.group.MALFORMED,
        expert.severity.ERROR),
    passed = ProtoExpert.new("commonground.passed_over", "Missing bytes that the class passes over",
        expert.group.PROTOCOL, expert.severity.NOTE),
    unknown = ProtoExpert.new("commonground.unknown_id", "Unknown command id", expert.group.UNDECODED,
        expert.severity.WARN),
    addresses = ProtoExpert.new("commonground.datagram_addresses", "Addresses in a datagram frame",
        expert.group.PROTOCOL, expert.severity.WARN),
}
proto.experts = {ex.stopped, ex.left, ex.frame, ex.passed, ex.unknown, ex.addresses}

local BYTES = {bytes = true, uuid = true, node = true, buffer = true, payload = true}

local function show_node(tvb, tree, base_at, node)
    local field = node.field
    local range = tvb:range(base_at + node.at, node.size)
    local kind = field[2]
    local item
    if node.children and node.value == nil or BYTES[kind] then
        item = tree:add(field.hf, range)
    else
        item = tree:add(field.hf, range, node.value)
    end
    if node.label then
        item:set_text(node.label .. (kind and not node.children and ": " .. tostring(node.value) or ""))
    end
    if node.remark then
        item:append_text(" (" .. node.remark .. ")")
    end
    for _, child in ipairs(node.children or {}) do
        show_node(tvb, item, base_at, child)
    end
    node.item = item
end

-- Where an expert info points: the bytes that are missing begin at the end of what there is.
local function mark(tvb, tree, which, at, text)
    local inside = math.min(at, tvb:len())
    tree:add_tvb_expert_info(which, tvb:range(inside, math.min(1, tvb:len() - inside)), text)
end

local function show_reading(tvb, tree, reading)
    local reader = reading.reader
    for _, node in ipairs(reading.nodes) do
        show_node(tvb, tree, reader.base, node)
    end
    for _, note in ipairs(reader.notes) do
        mark(tvb, tree, ex.passed, reader.base + note.at, reading.class.name .. ": " .. note.text)
    end
    if not reading.good then
        local failure = reader.failure
        mark(tvb, tree, ex.stopped, reader.base + failure.at, reading.class.name .. ": " .. failure.text)
    elseif not reading.exact then
        local text = string.format("%d bytes after the last field of %s", reader:left(), reading.class.name)
        mark(tvb, tree, ex.left, reader.base + reader.at, text)
    end
end

local pack_messages = {}

local function show_pack_message(tvb, reading)
    local envelope = pack_messages[reading.class.name]
    local kind
    for _, node in ipairs(reading.nodes) do
        local name = node.field[1]
        if name == "m_PackType" then
            kind = node.value
        elseif node.field[2] == "payload" and envelope and classes[envelope[kind]] then
            local class = classes[envelope[kind]]
            local bytes = node.value
            -- The bytes of a block follow its size.
            local base_at = reading.reader.base + node.at + node.size - #bytes
            local inner = read_payload(bytes, base_at, class, prefs.width == 32, not class.cmd)
            node.item:append_text(" (" .. class.name .. ")")
            show_reading(tvb, node.item, inner)
        end
    end
end

local show_stream_frame

-- A command's payload by the class with its id: of two classes with one id, the one that takes all bytes.
local function show_command(tvb, tree, at, size, id, info, depth)
    local shown
    local bytes = size > 0 and tvb:raw(at, size) or ""
    for _, class in ipairs(by_id[id] or {}) do
        local reading = read_payload(bytes, at, class, prefs.width == 32, false)
        if not shown or reading.exact then
            shown = reading
        end
        if reading.exact then
            break
        end
    end
    if not shown then
        local item = size > 0 and tree:add(hf.payload, tvb:range(at, size)) or tree
        item:add_proto_expert_info(ex.unknown, string.format("No class has the id 0x%04x", id))
        info[#info + 1] = string.format("unknown id 0x%04x", id)
        return
    end
    local name = shown.class.name
    info[#info + 1] = string.format("%s 0x%04x%s", name, id, shown.exact and "" or " [damaged]")
    tree:append_text(", " .. name)
    tree:add(hf.class, tvb:range(at, size), name):set_generated()
    show_reading(tvb, tree, shown)
    show_pack_message(tvb, shown)
    for _, node in ipairs(shown.nodes) do
        local inner = node.field[2] == "buffer" and node.value
        if inner and #inner >= STREAM_HEAD and depth < DEEPEST_FRAME then
            local begin = shown.reader.base + node.at + node.size - #inner
            local word = tvb:range(begin + 2, 4):le_uint()
            local addresses = word % 2 + math.floor(word / 2) % 2
            if STREAM_HEAD + ADDRESS * addresses + math.floor(word / 4) == #inner then
                show_stream_frame(tvb, node.item, begin, #inner, info, depth + 1)
            end
        end
    end
end

-- Addresses, of which the size word says whether they follow. Returns the offset after them, or nil.
local function show_addresses(tvb, tree, at, last, word)
    for i, address in ipairs({hf.from, hf.target}) do
        if math.floor(word / i) % 2 == 1 then
            if at + ADDRESS > last then
                return nil
            end
            tree:add(address, tvb:range(at, ADDRESS))
            at = at + ADDRESS
        end
    end
    return at
end

-- Marks a payload that is shorter than its frame says, and shows what there is.
local function show_payload(tvb, tree, at, last, size, id, info, depth)
    local present = last - at
    if size > present then
        mark(tvb, tree, ex.frame, last, string.format("a payload of %d bytes, had %d", size, present))
    end
    show_command(tvb, tree, at, math.min(size, present), id, info, depth)
    if size < present then
        mark(tvb, tree, ex.frame, at + size, string.format("%d bytes after the frame", present - size))
    end
end

show_stream_frame = function(tvb, parent, at, size, info, depth)
    local last = at + size
    local tree = parent:add(proto, tvb:range(at, size), "Stream frame")
    if size < STREAM_HEAD then
        tree:add_proto_expert_info(ex.frame, "no whole frame head")
        info[#info + 1] = "bad frame"
        return
    end
    local id = tvb:range(at, 2):le_uint()
    local word = tvb:range(at + 2, 4):le_uint()
    local payload = math.floor(word / 4)
    tree:add_le(hf.id, tvb:range(at, 2))
    tree:add_le(hf.size_word, tvb:range(at + 2, 4))
    tree:add(hf.size, tvb:range(at + 2, 4), payload):set_generated()
    local next_at = show_addresses(tvb, tree, at + STREAM_HEAD, last, word)
    if not next_at then
        tree:add_proto_expert_info(ex.frame, "the frame ends within its addresses")
        info[#info + 1] = "bad frame"
        return
    end
    show_payload(tvb, tree, next_at, last, payload, id, info, depth)
end

-- A number in groups of seven bits, the lowest first: the number and the offset after it, or nil.
local function seven_bits(bytes, at)
    local value, scale = 0, 1
    while scale < 2 ^ 35 do
        local byte = bytes:byte(at + 1)
        if not byte then
            return nil
        end
        at = at + 1
        value = value + byte % 128 * scale
        scale = scale * 128
        if byte < 128 then
            return value, at
        end
    end
    return nil
end

-- A message of a net session: its class, flags, addresses, and a stream frame as its data.
local function show_session_message(tvb, tree, at, size, info)
    local bytes = tvb:raw(at, size)
    local name_size, next_at = seven_bits(bytes, 0)
    tree:add(hf.message, tvb:range(at + next_at, name_size))
    next_at = next_at + name_size
    local flags = bytes:byte(next_at + 1) or 0
    next_at = next_at + 1
    local targets, data = 0, nil
    if flags % 2 == 1 and next_at + ADDRESS <= size then
        tree:add(hf.session_from, tvb:range(at + next_at, ADDRESS))
        next_at = next_at + ADDRESS
    end
    if math.floor(flags / 2) % 2 == 1 then
        targets, next_at = seven_bits(bytes, next_at)
        for _ = 1, targets or 0 do
            if next_at + ADDRESS > size then
                break
            end
            tree:add(hf.session_target, tvb:range(at + next_at, ADDRESS))
            next_at = next_at + ADDRESS
        end
    end
    if next_at then
        data, next_at = seven_bits(bytes, next_at)
    end
    if not data then
        tree:add_proto_expert_info(ex.frame, "the message ends before its data")
        info[#info + 1] = "bad message"
        return
    end
    if next_at + data ~= size then
        tree:add_proto_expert_info(ex.frame, string.format("data of %d bytes, had %d", data, size - next_at))
    end
    show_stream_frame(tvb, tree, at + next_at, math.min(data, size - next_at), info, 0)
end

local function show_packet(tvb, tree, at, length, info)
    if length == 0 then
        info[#info + 1] = "empty packet"
        return
    end
    local begin = tvb:raw(at, math.min(length, 1 + #SESSION_MESSAGE))
    if length == #GREETING + ADDRESS and begin:sub(1, #GREETING) == GREETING then
        tree:add(hf.greeting, tvb:range(at, length))
        info[#info + 1] = "session greeting"
    elseif begin == string.char(#SESSION_MESSAGE) .. SESSION_MESSAGE then
        show_session_message(tvb, tree, at, length, info)
    else
        show_stream_frame(tvb, tree, at, length, info, 0)
    end
end
