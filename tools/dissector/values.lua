-- The reader: walks the orders above over the bytes of a payload, by the same rules as the classes' own Read.
--
-- An order is a list of fields in wire order. A field is {name, kind, ...}; its other members are
--   of       the class of a record; the element of an array or a list; both parts of a pair; the columns of a table
--   key      the key that is sent before each element of a map
--   size     the number of elements of an array, or of raw bytes; with by, the most
--   by       the int field that says how many
--   tests    what decides a list: "count", "nothing", "last", "above zero"; of another field "nothing". All, if absent
--   into     "existing" for a list that keeps no more elements than it has
--   apart    the count of a list is a field of its own, earlier
--   rows     of a table: "own", "said" or "counted"; own, said and across are its numbers
--   most     the most bytes of a payload
--   word     what the class does by hand

-- Bytes of the values of fixed size, and of the smallest value of the others.
local FIXED = {bool = 1, int8 = 1, uint8 = 1, int16 = 2, uint16 = 2, int32 = 4, uint32 = 4, uuid = 16, node = 6}
local SMALLEST = {float = 1, text = 1, buffer = 4, payload = 4, list = 4, count = 4}
local SIGN = {int8 = 0x80, int16 = 0x8000, int32 = 0x80000000}

local HEAD = {
    {"m_HeadVersion", "uint16"},
    {"m_ClientIndex", "uint16", tests = "nothing"},
    {"m_ClientAddress", "uuid"},
    {"m_AccountName", "text"},
}

local function smallest_of(field)
    local kind = field[2]
    if kind == "record" then
        return classes[field.of].smallest
    elseif kind == "array" then
        return smallest_of(field.of) * field.size
    elseif kind == "pair" then
        return smallest_of(field.of[1]) + smallest_of(field.of[2])
    elseif kind == "bytes" then
        return field.size
    end
    return FIXED[kind] or SMALLEST[kind] or 0
end

-- bytes is the payload as a string; base is its offset in the tvb. at counts from 0.
local Reader = {}
Reader.__index = Reader

local function new_reader(bytes, base, wide)
    return setmetatable({bytes = bytes, base = base, size = #bytes, at = 0, wide = wide, path = {}, notes = {}}, Reader)
end

function Reader:left()
    return self.size - self.at
end

-- Notes why a value cannot be read. Whether that stops the decoding is decided by the step that the value belongs to.
function Reader:fail(what)
    self.failure = {at = self.at, text = what .. " at " .. table.concat(self.path)}
    return nil
end

function Reader:missing(needed)
    return self:fail(string.format("needed %d, had %d", needed, self:left()))
end

-- A failure that the class passes over.
function Reader:tolerate()
    if self.failure then
        self.notes[#self.notes + 1] = {at = self.failure.at, text = self.failure.text .. "; the class passes over it"}
        self.failure = nil
    end
end

function Reader:take(size)
    if size < 0 or size > self:left() then
        return self:missing(size)
    end
    local bytes = self.bytes:sub(self.at + 1, self.at + size)
    self.at = self.at + size
    return bytes
end

function Reader:number(size)
    local bytes = self:take(size)
    if not bytes then
        return nil
    end
    local value = 0
    for i = 1, size do
        value = value * 256 + bytes:byte(i)
    end
    return value
end

function Reader:int()
    local value = self:number(4)
    return value and (value >= 0x80000000 and value - 0x100000000 or value)
end

-- The count before a text: the two highest bits of the first byte are the number of bytes that follow.
function Reader:variable()
    local first = self:number(1)
    if not first then
        return nil
    end
    local value = first % 64
    for _ = 1, math.floor(first / 64) do
        local byte = self:number(1)
        if not byte then
            return nil
        end
        value = value * 256 + byte
    end
    return value
end

local function utf8_of(code)
    if code > 0x10ffff or (code >= 0xd800 and code <= 0xdfff) then
        code = 0xfffd
    end
    local function tail(shift)
        return 0x80 + math.floor(code / shift) % 64
    end
    if code < 0x80 then
        return string.char(code)
    elseif code < 0x800 then
        return string.char(0xc0 + math.floor(code / 64), tail(1))
    elseif code < 0x10000 then
        return string.char(0xe0 + math.floor(code / 4096), tail(64), tail(1))
    end
    return string.char(0xf0 + math.floor(code / 262144), tail(4096), tail(64), tail(1))
end

-- What a reader with four-byte characters makes of a surrogate: each by itself, whatever the unit beside it.
local function widened(unit)
    return bit.bor((unit - 0xd800) % 0x10000 * 1024, (unit - 0xdc00) % 0x10000) + 0x10000
end

-- The text up to its first zero unit, and whether zero units follow it, as a writer with four-byte characters sends.
local function text_of(units, wide)
    local out = {}
    local i, n = 1, #units
    while i < n do
        local low, high = units:byte(i, i + 1)
        local unit = low + 256 * high
        i = i + 2
        if unit == 0 then
            return table.concat(out), true
        end
        if unit >= 0xd800 and unit <= 0xdfff then
            local next_low, next_high = units:byte(i, i + 1)
            local next_unit = next_high and next_low + 256 * next_high or 0
            if wide then
                unit = widened(unit)
            elseif unit < 0xdc00 and next_unit >= 0xdc00 and next_unit <= 0xdfff then
                unit = 0x10000 + (unit - 0xd800) * 1024 + next_unit - 0xdc00
                i = i + 2
            end
        end
        out[#out + 1] = utf8_of(unit)
    end
    return table.concat(out), false
end

-- The number at the start of a float's text, or nil.
local function float_of(text)
    local trimmed = text:match("^[^%z]*"):match("^%s*(.*)$")
    local sign, rest = trimmed:match("^([+-]?)(.*)$")
    local lower = rest:lower()
    local value
    if lower:match("^inf") then
        value = math.huge
    elseif lower:match("^nan") then
        value = 0 / 0
    else
        local digits = lower:match("^0x%x*%.?%x*p[+-]?%d+") or lower:match("^0x%x+%.?%x*") or
            lower:match("^0x%.%x+") or lower:match("^%d+%.?%d*e[+-]?%d+") or lower:match("^%.%d+e[+-]?%d+") or
            lower:match("^%d+%.?%d*") or lower:match("^%.%d+")
        value = digits and tonumber(digits)
    end
    return value and (sign == "-" and -value or value)
end

-- Each returns the value, or nil after a failure, and a remark for people.
local scalars = {}
for kind, size in pairs(FIXED) do
    local sign = SIGN[kind]
    scalars[kind] = function(reader)
        local value = reader:number(size)
        return value and sign and value >= sign and value - 2 * sign or value
    end
end
scalars.bool = function(reader)
    local value = reader:number(1)
    if value == nil then
        return nil
    end
    return value ~= 0, value > 1 and string.format("sent as 0x%02x", value) or nil
end
scalars.uuid = function(reader)
    return reader:take(16)
end
scalars.node = function(reader)
    return reader:take(6)
end
scalars.float = function(reader)
    local length = reader:number(1)
    local text = length and reader:take(length)
    if not text then
        return nil
    end
    local value = float_of(text)
    return value or 0, not value and "not a number: the field keeps its value" or nil
end
scalars.text = function(reader)
    local count = reader:variable()
    if not count then
        return nil
    end
    if count > MOST_TEXT_UNITS and not reader.is_record then
        return reader:fail(string.format("a text of %d units, the most is %d,", count, MOST_TEXT_UNITS))
    end
    local units = reader:take(2 * count)
    if not units then
        return nil
    end
    local text, is_wide = text_of(units, reader.wide)
    return text, is_wide and string.format("%d units, as 32-bit characters are sent", count) or nil
end

-- The bytes of a buffer or a packager, after their size.
local function block_of(reader, field)
    local place = #reader.path + 1
    reader.path[place] = "(size)"
    local size = reader:int()
    reader.path[place] = nil
    if not size then
        return nil
    end
    local ends_well = field.word == "EndsWellBeforeItsBytes"
    if ends_well and size <= 0 then
        return ""
    end
    local most = field[2] == "buffer" and field.word ~= "Unlimited" and MOST_BUFFER
        or field.most
    if size < 0 or most and size > most then
        return reader:fail(string.format("a size of %d, which is out of range,", size))
    end
    return reader:take(size)
end
scalars.buffer = block_of
scalars.payload = block_of
