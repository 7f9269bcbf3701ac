-- A second window: the buttons that open the other window kinds (the modal
-- dialog and the popup menu), and what each kind is for.

local function kind(name, what)
    return ui.row({ ui.label(name, "termSkin"), ui.label(what, "captionSkin") }, { gap = 4 })
end

return {
    kind = "Window",
    name = "tools",
    text = "Window kinds",
    position = { horz = 740, vert = 196 },
    size = { horz = 366, vert = 300 },
    layout = { kind = "vert", gap = 10, horzAlign = { type = "stretch" }, vertAlign = { type = "min" } },
    children = {
        ui.row({
            ui.button({ text = "Open dialog…", skin = "primaryButtonSkin", name = "openDialog",
                tooltip = "Opens a modal window", onChange = function() gallery.open("dialog") end }),
            ui.button({ text = "Show popup menu", name = "openPopup", tooltip = "Opens a popup window below",
                onChange = function(handle) gallery.open("popup", handle) end }),
        }),
        ui.paragraph("Tab moves the focus, Space or Return presses. Rest the mouse on a button to see its tooltip.",
            302, "noteSkin"),
        { kind = "Panel", skin = "separatorSkin" },
        ui.column({
            kind("Window", "Stacks; a click raises it."),
            kind("ModalWindow", "Blocks the windows beneath."),
            kind("PopupWindow", "Closes on a click elsewhere."),
            kind("OverlayWindow", "Beneath all; takes no mouse."),
        }, { gap = 6 }),
    },
    visible = true,
}
