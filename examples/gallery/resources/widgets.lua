-- Building blocks for the gallery's window resources. The application runs
-- this file once in the skin script's Lua state before it loads any window,
-- so every resource can use the global table `ui`. Each function answers a
-- widget description in the form of docs/resource-format.md.
--
-- The scene also provides `gallery`: open(name [, anchor]), close(name),
-- status(text), hasKind(kind), quit(), scale, dir.

ui = {}

-- Keyboard focus moves in this order; every focusable widget made here takes
-- the next number, so the order is that of the resource files.
local nextTab = 0
local function tabOrder()
    nextTab = nextTab + 1
    return nextTab
end

-- Copies the keys of `from` into `into` that `into` does not have.
local function merge(into, from)
    for k, v in pairs(from or {}) do
        if into[k] == nil then into[k] = v end
    end
    return into
end

-- The entries of `list` whose widget kind this build of the toolkit has.
-- Resources may name kinds that come later; until then they are left out.
function ui.available(list)
    local out = {}
    for _, entry in ipairs(list) do
        if entry and gallery.hasKind(entry.kind) then
            out[#out + 1] = entry
        end
    end
    return out
end

-- Text in one of the label skins (labelSkin, bodySkin, captionSkin,
-- sectionSkin, titleSkin...).
function ui.label(text, skin, extra)
    return merge({ kind = "Static", skin = skin or "labelSkin", text = text }, extra)
end

-- Text that wraps at `width`. A wrapping label measures its height at its
-- present width, so it starts with the width it will have.
function ui.paragraph(text, width, skin, extra)
    return merge({ kind = "Static", skin = skin or "bodySkin", text = text, size = { horz = width, vert = 0 } }, extra)
end

-- One picture skin at its own size.
function ui.picture(skin, extra)
    return merge({ kind = "Static", skin = skin }, extra)
end

-- Children side by side, centred on one line.
function ui.row(children, options)
    options = options or {}
    return merge({
        kind = "Panel",
        layout = {
            kind = "horz",
            gap = options.gap or 8,
            horzAlign = { type = options.align or "min" },
            vertAlign = { type = options.vertAlign or "middle" },
        },
        children = ui.available(children),
    }, options.extra)
end

-- Children one under the other, left-aligned or stretched to the width.
function ui.column(children, options)
    options = options or {}
    return merge({
        kind = "Panel",
        layout = {
            kind = "vert",
            gap = options.gap or 6,
            horzAlign = { type = options.stretch and "stretch" or "min" },
            vertAlign = { type = "min" },
        },
        children = ui.available(children),
    }, options.extra)
end

-- A titled white card around a column of children.
function ui.card(title, children, options)
    options = options or {}
    local all = { ui.label(title, "sectionSkin") }
    for _, child in ipairs(children) do all[#all + 1] = child end
    return merge({
        kind = "Panel",
        skin = "cardSkin",
        layout = {
            kind = "vert", gap = options.gap or 10, horzAlign = { type = "stretch" }, vertAlign = { type = "min" },
        },
        children = ui.available(all),
    }, options.extra)
end

-- Settings every control shares: text, name, tooltip, enabled, the tab
-- stop, and `onChange`, called with the widget's handle on a user change.
local function control(kind, t, skin)
    local d = {
        kind = kind,
        text = t.text,
        name = t.name,
        tooltip = t.tooltip,
        enabled = t.enabled,
        skin = t.skin or skin,
        state = t.state,
        tabOrder = tabOrder(),
    }
    if t.onChange then
        d.callbacks = { ["widget change"] = t.onChange }
    end
    return d
end

function ui.button(t) return control("Button", t) end

function ui.toggle(t) return control("ToggleButton", t) end
function ui.switch(t) return control("SwitchButton", t) end
function ui.checkBox(t) return control("CheckBox", t) end
function ui.radio(t) return control("RadioButton", t) end

-- The on/off/mixed word of a toggle's state, for status messages.
function ui.stateName(handle)
    local state = vurel.get(handle, "state")
    if state == nil then return "" end
    return state > 0 and "on" or state < 0 and "mixed" or "off"
end
