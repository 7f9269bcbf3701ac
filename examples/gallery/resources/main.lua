-- The gallery's main window: every widget kind in its states, in cards laid
-- out by rows and columns. The status line at the bottom tells what the
-- last action did.

local function say(text)
    return function() gallery.status(text) end
end

local function toggled(what)
    return function(handle)
        gallery.status(what .. " is " .. ui.stateName(handle) .. ".")
    end
end

local function chosen(handle)
    gallery.status("Chosen: " .. vurel.get(handle, "text") .. ".")
end

local buttons = ui.card("Buttons", {
    ui.label("Push buttons act on a click, or on Space and Return when focused.", "captionSkin"),
    ui.row({
        ui.button({ text = "Save changes", skin = "primaryButtonSkin", name = "save",
            tooltip = "The primary action of a group", onChange = say("Saved.") }),
        ui.button({ text = "Cancel", tooltip = "An ordinary push button", onChange = say("Cancelled.") }),
        ui.button({ text = "Delete…", skin = "dangerButtonSkin", tooltip = "An action that destroys something",
            onChange = say("Deleted.") }),
        ui.button({ text = "Disabled", enabled = false, tooltip = "Disabled widgets take no input" }),
    }),
})

local toggles = ui.card("Toggle and switch buttons", {
    ui.row({
        ui.toggle({ text = "Bold", state = 1, tooltip = "A toggle button that is on", onChange = toggled("Bold") }),
        ui.toggle({ text = "Italic", onChange = toggled("Italic") }),
        ui.toggle({ text = "Underline", onChange = toggled("Underline") }),
        ui.toggle({ text = "Mixed", state = -1, tooltip = "The third state: neither on nor off",
            onChange = toggled("Mixed") }),
    }),
    ui.row({
        ui.switch({ text = "Day", onChange = chosen }),
        ui.switch({ text = "Week", state = 1, onChange = chosen }),
        ui.switch({ text = "Month", onChange = chosen }),
        ui.switch({ text = "Year", enabled = false }),
        ui.label("One of a group, like radio buttons", "captionSkin"),
    }, { gap = 6 }),
})

local checks = ui.card("Check boxes and radio buttons", {
    ui.row({
        ui.column({
            ui.checkBox({ text = "Show grid", state = 1, name = "grid", onChange = toggled("Show grid") }),
            ui.checkBox({ text = "Snap to grid", name = "snap", onChange = toggled("Snap to grid") }),
            ui.checkBox({ text = "Some layers locked", state = -1, onChange = toggled("Some layers locked") }),
            ui.checkBox({ text = "Read-only setting", state = 1, enabled = false }),
        }, { gap = 4 }),
        ui.column({
            ui.radio({ text = "Draft quality", onChange = chosen }),
            ui.radio({ text = "Normal quality", state = 1, onChange = chosen }),
            ui.radio({ text = "Best quality", onChange = chosen }),
            ui.radio({ text = "Print quality", enabled = false }),
        }, { gap = 4 }),
    }, { gap = 64, vertAlign = "min" }),
})

local labels = ui.card("Labels and pictures", {
    ui.row({
        ui.picture("infoIconSkin"),
        ui.picture("successIconSkin"),
        ui.picture("warningIconSkin", { angle = 15, pivot = { horz = 18, vert = 18 } }),
        ui.column({
            ui.label("Labels and pictures are Static widgets in their skins.", "labelSkin"),
            ui.label("A static can turn about a pivot, as the last picture does.", "captionSkin"),
        }, { gap = 2 }),
    }, { gap = 12 }),
})

return {
    kind = "Window",
    name = "main",
    text = "VUREL — widget gallery",
    position = { horz = 20, vert = 14 },
    size = { horz = 708, vert = 736 },
    layout = { kind = "vert", gap = 12, horzAlign = { type = "stretch" }, vertAlign = { type = "min" } },
    -- Closing the main window ends the program.
    callbacks = { ["window close"] = function() gallery.quit() end },
    children = {
        ui.row({
            ui.picture("logoSkin"),
            ui.column({
                ui.label("The default skin", "titleSkin"),
                ui.label("Every widget kind in its states, built from Lua window resources.", "captionSkin"),
            }, { gap = 0 }),
        }, { gap = 12 }),
        buttons,
        toggles,
        checks,
        labels,
        { kind = "Panel", skin = "separatorSkin" },
        ui.label("Ready. Click, type and hover: this line tells what happened last.", "statusSkin",
            { name = "status" }),
    },
    visible = true,
}
