-- The modal dialog. It does not lock the flow: the gallery's loop goes on
-- while it is open, and the other windows simply take no input.

local function cancel(handle)
    gallery.status("Kept the changes.")
    vurel.close(vurel.root(handle))
end

local function discard(handle)
    gallery.status("Discarded the changes.")
    vurel.close(vurel.root(handle))
end

return {
    kind = "ModalWindow",
    name = "dialog",
    text = "Discard changes?",
    lockFlow = false,
    draggable = true,
    size = { horz = 440, vert = 214 },
    hotKeys = {
        { key = { button = "escape" }, call = cancel },
        { key = { button = "return" }, call = discard },
    },
    layout = { kind = "vert", gap = 18, horzAlign = { type = "stretch" }, vertAlign = { type = "min" } },
    children = {
        ui.row({
            ui.picture("warningIconSkin"),
            ui.column({
                ui.label("You have unsaved changes.", "sectionSkin"),
                ui.paragraph("If you discard them, your edits since the last save are lost.", 326),
            }, { gap = 4 }),
        }, { gap = 14, vertAlign = "min" }),
        ui.row({
            ui.button({ text = "Cancel", name = "cancel", onChange = cancel }),
            ui.button({ text = "Discard", name = "discard", skin = "dangerButtonSkin", onChange = discard }),
        }, { align = "max" }),
    },
}
