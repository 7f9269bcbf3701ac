-- A dialog: a message, two options as check boxes, a choice of three radio
-- buttons, and OK / Cancel at the bottom right. Its callbacks write what
-- happened into the global dialogLog, which the test reads back.

local function record(text)
    _G.dialogLog = (_G.dialogLog or "") .. text .. ";"
end

function onOption(box)
    record(vurel.get(box, "name") .. "=" .. vurel.get(box, "state"))
end

function onChoice(radio)
    record("choice " .. vurel.get(radio, "name"))
end

function onOk(button)
    record("ok")
    vurel.set(vurel.find(vurel.root(button), "message"), "text", "Saved")
end

function onCancel(button)
    record("cancel")
    vurel.close(vurel.root(button))
end

function onClosed(window)
    record("closed")
end

local function option(name, text, state)
    return {
        kind = "CheckBox", name = name, text = text, state = state,
        size = { horz = 90, vert = 20 },
        callbacks = { ["widget change"] = "onOption" },
    }
end

local function choice(name, state)
    return {
        kind = "RadioButton", name = name, text = name, state = state,
        size = { horz = 80, vert = 20 },
        callbacks = { ["widget change"] = "onChoice" },
    }
end

local function row(name, height, horzAlign, children)
    return {
        kind = "Panel", name = name, size = { horz = 10, vert = height },
        layout = { kind = "horz", gap = 6, horzAlign = { type = horzAlign }, vertAlign = { type = "stretch" } },
        children = children,
    }
end

return {
    kind = "Window",
    name = "dialog",
    text = "Options",
    position = { horz = 100, vert = 80 },
    size = { horz = 320, vert = 200 },
    layout = { kind = "vert", gap = 4, horzAlign = { type = "stretch" }, vertAlign = { type = "min" } },
    callbacks = { ["window close"] = "onClosed" },
    children = {
        { kind = "Panel", name = "message", text = "Choose the options", size = { horz = 10, vert = 24 } },
        row("options", 26, "min", { option("sound", "Sound", 1), option("music", "Music", 0) }),
        row("choices", 26, "min", { choice("easy", 1), choice("normal", 0), choice("hard", 0) }),
        row("buttons", 26, "max", {
            { kind = "Button", name = "ok", text = "OK", size = { horz = 60, vert = 20 },
              callbacks = { ["widget change"] = "onOk" } },
            { kind = "Button", name = "cancel", text = "Cancel", size = { horz = 60, vert = 20 },
              callbacks = { ["widget change"] = "onCancel" } },
        }),
    },
    visible = true,
}
