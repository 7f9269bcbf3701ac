-- A window whose close callback kills it, with a turned label.
function onClose(window)
    vurel.kill(window)
end

return {
    kind = "Window",
    size = { horz = 100, vert = 60 },
    callbacks = { ["window close"] = "onClose" },
    children = { { kind = "Static", name = "title", text = "Title", angle = 5, pivot = { horz = 10, vert = 5 } } },
    visible = true,
}
