-- The walk over an order.

local value_of, order_of

-- The elements of an array. With every, each is tried and none decides.
local function array_of(reader, field, node, count, every)
    local place = #reader.path + 1
    local good = true
    for i = 0, count - 1 do
        reader.path[place] = "[" .. i .. "]"
        local before = reader.at
        local element, ok = value_of(reader, field.of, {})
        node.children[#node.children + 1] = element
        if not ok then
            if not every then
                good = false
                break
            end
            reader:tolerate()
            if reader.at == before and reader:left() == 0 then
                break
            end
        end
    end
    reader.path[place] = nil
    return good
end

-- The elements to read for a count: at most one more than fit, so that a count costs no more than its bytes.
local function bounded(reader, count, smallest)
    if count <= TRUSTED_COUNT then
        return math.max(count, 0)
    end
    return math.min(count, math.floor(reader:left() / math.max(smallest, 1)) + 1)
end

-- A value that was not read, but took bytes: its list holds its default.
local function unread(field, from, to)
    local kind = field[2]
    local value = kind == "text" and "" or kind == "bool" and false or 0
    return {field = field, at = from, size = to - from, value = value, remark = "not read"}
end

local function list_of(reader, field, node, scope)
    local tests = field.tests
    local place = #reader.path + 1
    local count
    if field.apart then
        count = scope.counts[field[1]] or 0
    else
        reader.path[place] = "(count)"
        count = reader:int()
        reader.path[place] = nil
        if not count then
            if tests ~= "nothing" and tests ~= "above zero" then
                return false
            end
            reader:tolerate()
            count = 0
        end
    end
    node.value = count
    node.remark = field.into and "those beyond the list's own elements are dropped" or nil
    local bound = bounded(reader, count, smallest_of(field.of) + (field.key and smallest_of(field.key) or 0))
    local good = true
    for i = 0, bound - 1 do
        reader.path[place] = "[" .. i .. "]"
        local before = reader.at
        if field.key then
            reader.path[place + 1] = ".key"
            local key, ok = value_of(reader, field.key, {})
            reader.path[place + 1] = nil
            node.children[#node.children + 1] = key
            if not ok then
                if not tests then
                    reader.path[place] = nil
                    return false
                end
                reader:tolerate()
            end
        end
        local element, ok = value_of(reader, field.of, {})
        node.children[#node.children + 1] = element
        good = ok
        if not ok then
            if not tests or tests == "last" and i == bound - 1 then
                reader.path[place] = nil
                return false
            end
            reader:tolerate()
            -- No later element can be read either.
            if reader.at == before then
                reader.path[place] = nil
                return tests ~= "last" or reader:missing(smallest_of(field.of)) ~= nil
            end
            if not element then
                node.children[#node.children + 1] = unread(field.of, before, reader.at)
            end
        end
    end
    reader.path[place] = nil
    return good or tests ~= "last"
end

-- A number before the rows of a table, which no member keeps.
local function said(reader, node, column, name, own)
    local from = reader.at
    reader.path[#reader.path + 1] = "(" .. name .. ")"
    local value = reader:int()
    reader.path[#reader.path] = nil
    if value then
        node.children[#node.children + 1] =
            {field = {hf = column.number_hf}, at = from, size = 4, value = value, label = name .. ": " .. value}
        return value
    end
    reader:tolerate()
    return own
end

-- Rows of one cell of each column. No cell decides. Of a grid, a column that is narrower than it has no cells beyond
-- its own width.
local function table_of(reader, field, node, scope)
    local columns = field.of
    local rows, across, row_size = 0, 1, 0
    if field.rows == "own" then
        said(reader, node, columns[1], "ignored count", 0)
        local place = #reader.path + 1
        reader.path[place] = columns[1][1]
        node.children[#node.children + 1] = (value_of(reader, columns[1], {every = true}))
        reader.path[place] = nil
        return true
    elseif field.rows == "counted" then
        rows = scope.counts[columns[1][1]] or 0
    elseif field.across then
        rows = said(reader, node, columns[1], "rows", 0)
        across = said(reader, node, columns[1], "columns", 0)
    else
        rows = said(reader, node, columns[1], "rows", field.said)
    end
    if rows <= 0 or across <= 0 then
        return true
    end
    for _, column in ipairs(columns) do
        local is_full = not field.across or column.of.size >= field.across
        row_size = row_size + (is_full and smallest_of(field.across and column.of.of or column.of) or 0)
    end
    local place = #reader.path + 1
    local cells = bounded(reader, rows * across, row_size)
    for i = 0, cells - 1 do
        local row, column_at = math.floor(i / across), i % across
        local before = reader.at
        for _, column in ipairs(columns) do
            local line = column.of
            if not field.across or line.size >= field.across or column_at < line.size then
                local index = field.across and string.format("[%d][%d]", row, column_at) or string.format("[%d]", row)
                reader.path[place] = column[1] .. index
                local cell, ok = value_of(reader, field.across and line.of or line, {})
                if not ok then
                    reader:tolerate()
                end
                if cell then
                    cell.label = column[1] .. index
                    node.children[#node.children + 1] = cell
                end
            end
        end
        reader.path[place] = nil
        if reader.at == before then
            break
        end
    end
    return true
end

-- Reads one value of any kind: its node, or nil, and whether it was read. After a failure a node has what there was.
value_of = function(reader, field, scope)
    local kind = field[2]
    local node = {field = field, at = reader.at}
    local good
    local read = scalars[kind]
    if read then
        local value, remark = read(reader, field)
        if value == nil then
            return nil, false
        end
        node.value, node.remark, good = value, remark, true
    elseif kind == "bytes" then
        local size = field.by and math.max(0, scope.sizes[field.by] or 0) or field.size
        if field.tests == "nothing" and size > reader:left() then
            reader:missing(size)
            reader:tolerate()
            size = reader:left()
        end
        node.value = reader:take(size)
        if not node.value then
            return nil, false
        end
        good = true
    else
        node.children = {}
        if kind == "record" then
            local place = #reader.path + 1
            reader.path[place] = "."
            good = order_of(reader, classes[field.of], node.children)
            reader.path[place] = nil
        elseif kind == "array" then
            local count = field.by and math.max(0, scope.sizes[field.by] or 0) or field.size
            good = array_of(reader, field, node, count, field.tests == "nothing" or scope.every)
        elseif kind == "pair" then
            good = true
            for i, name in ipairs({".first", ".second"}) do
                local place = #reader.path + 1
                reader.path[place] = name
                local part, ok = value_of(reader, field.of[i], {})
                reader.path[place] = nil
                node.children[#node.children + 1] = part
                if not ok then
                    good = false
                    break
                end
            end
        elseif kind == "list" then
            good = list_of(reader, field, node, scope)
            if not node.value then
                return nil, false
            end
        else
            good = table_of(reader, field, node, scope)
        end
    end
    node.size = reader.at - node.at
    return node, good
end

-- The fields of a head: the version has one value, and a payload may end before the client index.
local function head_of(reader, count, nodes)
    for i = 1, count do
        local field = HEAD[i]
        reader.path[#reader.path + 1] = field[1]
        local node, ok = value_of(reader, field, {})
        nodes[#nodes + 1] = node
        if ok and i == 1 and node.value ~= HEAD_VERSION then
            reader.at = node.at
            reader:fail(string.format("version %d, expected %d,", node.value, HEAD_VERSION))
            reader.at = node.at + 2
            ok = false
        end
        reader.path[#reader.path] = nil
        if not ok then
            if field.tests ~= "nothing" then
                return false
            end
            reader:tolerate()
        end
    end
    return true
end

local PASSED_OVER = {SkippedOnFailure = true, EitherWay = true}

-- The fields of a class in wire order. False if it refuses the bytes; reader.failure then says why.
order_of = function(reader, class, nodes)
    local scope = {counts = {}, sizes = {}}
    local failure, skipped
    for _, field in ipairs(class.fields) do
        local kind, word = field[2], field.word
        if skipped ~= word then
            skipped = nil
        end
        if not skipped and (not failure or word == "TriedAnyway") then
            local place = #reader.path + 1
            local from = reader.at
            local good, node
            reader.path[place] = field[1]
            if kind == "head" then
                reader.path[place] = nil
                good = head_of(reader, field.size, nodes)
            elseif kind == "count" then
                reader.path[place + 1] = "(count)"
                local count = reader:int()
                reader.path[place + 1] = nil
                good = count ~= nil
                scope.counts[field[1]] = count
                node = good and {field = field, at = from, size = 4, value = count}
            else
                node, good = value_of(reader, field, scope)
                if good and not node.children then
                    scope.sizes[field[1]] = node.value
                end
            end
            reader.path[place] = nil
            if node then
                nodes[#nodes + 1] = node
            end
            if not good then
                if field.tests == "nothing" then
                    reader:tolerate()
                elseif PASSED_OVER[word] then
                    reader:tolerate()
                    skipped = word
                elseif word == "EndsWellBeforeItsBytes" and kind ~= "payload" then
                    reader:tolerate()
                    return true
                elseif word == "TriedAnyway" then
                    reader:tolerate()
                else
                    failure = failure or reader.failure
                end
            end
        end
    end
    reader.failure = failure
    return failure == nil
end

-- Reads a payload by a class: its nodes, whether the class takes all of it, and the reader with what went wrong.
local function read_payload(bytes, base, class, wide, is_record)
    local reader = new_reader(bytes, base, wide)
    reader.is_record = is_record
    local nodes = {}
    local good = order_of(reader, class, nodes)
    return {nodes = nodes, reader = reader, good = good, exact = good and reader:left() == 0, class = class}
end
