-- The content of the popup menu; the gallery makes the popup window itself
-- (its skin is "popupSkin") and loads this into it.

local function pick(handle)
    gallery.status("Menu: " .. vurel.get(handle, "text") .. ".")
    gallery.close("popup")
end

local function item(text, enabled)
    return ui.button({ text = text, skin = "menuItemSkin", enabled = enabled, onChange = pick })
end

return {
    size = { horz = 220, vert = 160 },
    layout = { kind = "vert", gap = 2, horzAlign = { type = "stretch" }, vertAlign = { type = "min" } },
    children = {
        item("Cut"),
        item("Copy"),
        item("Paste", false),
        { kind = "Panel", skin = "separatorSkin" },
        item("Select all"),
    },
}
