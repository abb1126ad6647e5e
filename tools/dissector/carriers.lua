-- The carriers: connections and datagrams, on ports of the preferences or recognised by what they carry.

-- What was shown before in the same packet of the capture stays before it.
local function show_info(pinfo, info)
    pinfo.cols.protocol = "commonground"
    pinfo.cols.info:clear()
    pinfo.cols.info:append(table.concat(info, ", ") .. "  ")
    pinfo.cols.info:fence()
end

-- Packets of a connection, each put together from its segments.
local function dissect_packets(tvb, pinfo, root)
    local info = {}
    local at, total = 0, tvb:len()
    while at < total do
        local left = total - at
        local length = left >= PACKET_HEAD and tvb:range(at, PACKET_HEAD):le_uint()
        if length and length > prefs.most_packet then
            local tree = root:add(proto, tvb:range(at, left))
            local text = string.format("a packet of %d bytes, more than a peer accepts", length)
            tree:add_proto_expert_info(ex.frame, text)
            info[#info + 1] = "bad packet length"
            break
        end
        if left < PACKET_HEAD + (length or 0) and pinfo.can_desegment > 0 then
            pinfo.desegment_offset = at
            pinfo.desegment_len = length and PACKET_HEAD + length - left or DESEGMENT_ONE_MORE_SEGMENT
            break
        end
        local present = length and math.min(length, left - PACKET_HEAD) or 0
        local tree = root:add(proto, tvb:range(at, math.min(left, PACKET_HEAD + present)))
        if not length then
            tree:add_proto_expert_info(ex.frame, "no whole packet length")
            info[#info + 1] = "cut packet"
            break
        end
        tree:add_le(hf.length, tvb:range(at, PACKET_HEAD))
        if present < length then
            tree:add_proto_expert_info(ex.frame, string.format("a packet of %d bytes, had %d", length, present))
        end
        if present > 0 or length == 0 then
            show_packet(tvb, tree, at + PACKET_HEAD, present, info)
        end
        at = at + PACKET_HEAD + present
    end
    if #info > 0 then
        show_info(pinfo, info)
    end
    return total
end

proto.dissector = dissect_packets

-- The head of a datagram frame: id, size word, and the offset after it, or nil.
local function datagram_head(bytes)
    if #bytes < 3 then
        return nil
    end
    local low, high, first = bytes:byte(1, 3)
    local more = math.floor(first / 64)
    if #bytes < 3 + more then
        return nil
    end
    local word = first % 64
    for i = 1, more do
        word = word * 256 + bytes:byte(3 + i)
    end
    return low + 256 * high, word, 3 + more
end

-- Whether the bytes are exactly one frame with a known id.
local function is_datagram_frame(bytes)
    local id, word, at = datagram_head(bytes)
    return id and by_id[id] and word % 4 == 0 and at + math.floor(word / 4) == #bytes
end

-- The places of the frames if the bytes are such frames, each after its length, as a connection over UDP has them.
local function frames_of_stream(bytes)
    local places, at = {}, 0
    while at < #bytes do
        local low, high = bytes:byte(at + 1, at + STREAM_LENGTH)
        local size = high and low + 256 * high
        if not size or not is_datagram_frame(bytes:sub(at + STREAM_LENGTH + 1, at + STREAM_LENGTH + size)) then
            return nil
        end
        places[#places + 1] = {at = at, size = size}
        at = at + STREAM_LENGTH + size
    end
    return #places > 0 and at == #bytes and places or nil
end

local function show_datagram_frame(tvb, tree, info)
    local id, word, at = datagram_head(tvb:raw(0, math.min(tvb:len(), 6)))
    if not id then
        tree:add_proto_expert_info(ex.frame, "no whole frame head")
        info[#info + 1] = "bad frame"
        return
    end
    tree:add_le(hf.id, tvb:range(0, 2))
    tree:add(hf.size_word, tvb:range(2, at - 2), word)
    tree:add(hf.size, tvb:range(2, at - 2), math.floor(word / 4)):set_generated()
    if word % 4 > 0 then
        tree:add_proto_expert_info(ex.addresses, "a receiver takes these addresses for the start of the payload")
    end
    local next_at = show_addresses(tvb, tree, at, tvb:len(), word)
    if next_at then
        show_payload(tvb, tree, next_at, tvb:len(), math.floor(word / 4), id, info, 0)
    else
        tree:add_proto_expert_info(ex.frame, "the frame ends within its addresses")
        info[#info + 1] = "bad frame"
    end
end

local function dissect_datagram(tvb, pinfo, root)
    local info, size = {}, tvb:len()
    local bytes = size > 0 and tvb:raw(0, size) or ""
    local places = not is_datagram_frame(bytes) and frames_of_stream(bytes)
    if not places then
        show_datagram_frame(tvb, root:add(proto, tvb:range(0, size), "Datagram frame"), info)
    end
    for _, place in ipairs(places or {}) do
        local tree = root:add(proto, tvb:range(place.at, STREAM_LENGTH + place.size), "Frame of a stream over UDP")
        tree:add_le(hf.length, tvb:range(place.at, STREAM_LENGTH))
        show_datagram_frame(tvb:range(place.at + STREAM_LENGTH, place.size):tvb(), tree, info)
    end
    show_info(pinfo, info)
    return size
end

local datagrams = Proto("commonground_udp", "Commonground datagrams")
datagrams.dissector = dissect_datagram

-- A connection is recognised by a packet whose length is that of its frame, with a known id, or by a greeting.
local function is_packet(tvb)
    if tvb:len() < PACKET_HEAD + STREAM_HEAD then
        return false
    end
    local length = tvb:range(0, PACKET_HEAD):le_uint()
    if length == #GREETING + ADDRESS and tvb:raw(PACKET_HEAD, #GREETING) == GREETING then
        return true
    end
    local word = tvb:range(PACKET_HEAD + 2, 4):le_uint()
    local addresses = word % 2 + math.floor(word / 2) % 2
    return by_id[tvb:range(PACKET_HEAD, 2):le_uint()] ~= nil
        and STREAM_HEAD + ADDRESS * addresses + math.floor(word / 4) == length
end

proto:register_heuristic("tcp", function(tvb, pinfo, root)
    if not is_packet(tvb) then
        return false
    end
    pinfo.conversation = proto
    dissect_packets(tvb, pinfo, root)
    return true
end)

-- A datagram is recognised if one frame takes all of it, or frames with their lengths do, and all ids are known.
proto:register_heuristic("udp", function(tvb, pinfo, root)
    local bytes = tvb:len() > 0 and tvb:raw(0, tvb:len()) or ""
    if not is_datagram_frame(bytes) and not frames_of_stream(bytes) then
        return false
    end
    dissect_datagram(tvb, pinfo, root)
    return true
end)

local ports = {["tcp.port"] = "", ["udp.port"] = ""}

local function use_ports(name, wanted, dissector)
    local by_port = DissectorTable.get(name)
    if ports[name] ~= "" then
        by_port:remove(ports[name], dissector)
    end
    ports[name] = wanted or ""
    if ports[name] ~= "" then
        by_port:add(ports[name], dissector)
    end
end

function proto.prefs_changed()
    use_ports("tcp.port", prefs.tcp_ports, proto)
    use_ports("udp.port", prefs.udp_ports, datagrams)
    pack_messages = {}
    for envelope, kind, message in prefs.pack_types:gmatch("([%w_]+)%s+(%-?%d+)%s+([%w_]+)") do
        pack_messages[envelope] = pack_messages[envelope] or {}
        pack_messages[envelope][tonumber(kind)] = message
    end
end

DissectorTable.get("tcp.port"):add_for_decode_as(proto)
DissectorTable.get("udp.port"):add_for_decode_as(datagrams)
