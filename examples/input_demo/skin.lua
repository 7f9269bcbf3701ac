-- A minimal skin script: the toolkit needs a global "Skin" table of skin
-- functions. This one gives the debug skin only.
Skin = {
    debugSkin = function()
        return { skinData = { params = {}, states = {} } }
    end,
}
