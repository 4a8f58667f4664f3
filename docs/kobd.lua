-- Takes messages of kobd apart that `kobctl monitor --pcap FILE` has written:
--   tshark -X lua_script:kobd.lua -r FILE
-- kobd-protocol(5) says what the fields mean.
local kobd = Proto("kobd", "kobd message")

local kinds = {[1] = "received", [2] = "answered", [3] = "sent"}
local classes = {[1] = "request", [3] = "event"}
local requests = {
    [1] = "ReqObjSet", [2] = "ReqObjGet", [3] = "ReqObjSetSilent", [4] = "ReqUpdate", [5] = "ReqTableMaxRow",
    [6] = "ReqTableElementCount", [7] = "ReqTableAdd", [8] = "ReqTableDel", [9] = "ReqTableGet", [10] = "ReqTableSet",
    [11] = "ReqTableSetSilent", [12] = "ReqTableDump", [13] = "ReqShow", [15] = "REQSubTableAdd",
}
local events = {
    [2] = "object changed", [3] = "table changed", [4] = "set finished", [16] = "EvtEthernetUp",
    [17] = "EvtEthernetDown", [18] = "EvtEthernetIPAdd", [19] = "EvtEthernetIPDel", [20] = "EvtNetworkUp",
    [21] = "EvtNetworkDown", [769] = "EvtApnChange", [771] = "EvtApnIPChange", [792] = "EvtPCscfIPChange",
    [799] = "row added, or connection changed", [800] = "row deleted", [801] = "row added under a parent",
}
local tags = {[0] = "result", [1] = "object", [2] = "value", [3] = "table", [4] = "index", [5] = "column", [6] = "parent"}

local field = {
    kind = ProtoField.uint16("kobd.kind", "Kind", base.DEC, kinds),
    missed = ProtoField.uint16("kobd.missed", "Messages missed before"),
    process = ProtoField.uint32("kobd.process", "Process that asked"),
    took = ProtoField.uint64("kobd.took", "Nanoseconds to the answer"),
    program = ProtoField.stringz("kobd.program", "Program that asked"),
    sequence = ProtoField.uint32("kobd.sequence", "Sequence"),
    module = ProtoField.uint32("kobd.module", "To module", base.HEX),
    class = ProtoField.uint16("kobd.class", "Class", base.DEC, classes),
    id = ProtoField.uint16("kobd.id", "Id"),
    length = ProtoField.uint16("kobd.length", "Length of the items"),
    tag = ProtoField.uint16("kobd.item.tag", "Tag", base.DEC, tags),
    text = ProtoField.stringz("kobd.item.text", "Text"),
    number = ProtoField.int32("kobd.item.number", "Number"),
}
kobd.fields = {
    field.kind, field.missed, field.process, field.took, field.program, field.sequence, field.module, field.class,
    field.id, field.length, field.tag, field.text, field.number,
}

local kParticulars = 32
local kHeader = 44

-- Adds the items to the tree; returns them in a line.
local function add_items(buffer, tree)
    local words = {}
    local at = 0
    while at + 4 <= buffer:len() do
        local tag = buffer(at, 2):le_uint()
        local length = buffer(at + 2, 2):le_uint()
        if at + 4 + length > buffer:len() then break end
        local item = tree:add(kobd, buffer(at, 4 + length), "Item: " .. (tags[tag] or tag))
        item:add_le(field.tag, buffer(at, 2))
        if length == 4 and (tag == 0 or tag == 4) then
            item:add_le(field.number, buffer(at + 4, 4))
            words[#words + 1] = tostring(buffer(at + 4, 4):le_int())
        elseif length > 0 then
            item:add(field.text, buffer(at + 4, length))
            words[#words + 1] = buffer(at + 4, length):stringz()
        end
        at = at + 4 + length
    end
    return table.concat(words, " ")
end

function kobd.dissector(buffer, packet, root)
    if buffer:len() < kParticulars + kHeader then return 0 end
    local tree = root:add(kobd, buffer())
    local kind = buffer(0, 2):le_uint()
    tree:add_le(field.kind, buffer(0, 2))
    tree:add_le(field.missed, buffer(2, 2))
    tree:add_le(field.process, buffer(4, 4))
    tree:add_le(field.took, buffer(8, 8))
    tree:add(field.program, buffer(16, 16))
    local message = buffer(kParticulars)
    local class, id = message(36, 2):le_uint(), message(38, 2):le_uint()
    tree:add_le(field.sequence, message(0, 4))
    tree:add_le(field.module, message(8, 4))
    tree:add_le(field.class, message(36, 2))
    tree:add_le(field.id, message(38, 2))
    tree:add_le(field.length, message(42, 2))
    local items = message:len() > kHeader and add_items(message(kHeader), tree) or ""
    local name = (class == 1 and requests[id] or events[id]) or ("message " .. id)
    packet.cols.protocol = "kobd"
    packet.cols.src = buffer(16, 16):stringz() .. " (" .. buffer(4, 4):le_uint() .. ")"
    packet.cols.info = kinds[kind] .. " " .. name .. " " .. items
    return buffer:len()
end

DissectorTable.get("wtap_encap"):add(wtap.USER0, kobd)
