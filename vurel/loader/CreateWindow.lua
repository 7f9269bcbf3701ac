-- Builds a window from a resource file.
--
-- Called with the resource's file name, and for loading into an existing
-- window also with that window's handle. Creating answers the window as a
-- light userdata; on any error nothing built here is left alive and the error
-- is raised again for the caller.
--
-- A resource is a Lua file that returns a table describing the window (or
-- sets the global Window to it); docs/resource-format.md tells its keys.

local resourceName, targetWindow = ...

-- Keys that describe structure rather than properties.
local structural = {
    kind = true, children = true, layout = true, callbacks = true,
    mouseCallbacks = true, keyboardCallbacks = true, hotKeys = true, visible = true,
}

local function loadDescription(name)
    local chunk, err = loadfile(name)
    if not chunk then
        error(err, 0)
    end
    -- The resource runs in its own environment, so its callback functions
    -- do not collide with those of other resources.
    local env = setmetatable({}, { __index = _G })
    setfenv(chunk, env)
    local description = chunk() or env.Window
    if type(description) ~= "table" then
        error(name .. ": the resource describes no window", 0)
    end
    return description, env
end

local function resolveFunction(env, value, what)
    if type(value) == "function" then
        return value
    end
    if type(value) == "string" and type(env[value]) == "function" then
        return env[value]
    end
    vurel.log("Callback " .. tostring(value) .. " of " .. what .. " is no function of the resource", 8)
    return nil
end

-- Properties in a fixed order: the skin first (it sets limits), "visible" last
-- (showing a modal window can block until it closes).
local function applyProperties(handle, description)
    if description.skin ~= nil then
        vurel.set(handle, "skin", description.skin)
    end
    local names = {}
    for key in pairs(description) do
        if type(key) == "string" and not structural[key] and key ~= "skin" then
            names[#names + 1] = key
        end
    end
    table.sort(names)
    for _, key in ipairs(names) do
        vurel.set(handle, key, description[key])
    end
end

local function connect(handle, description, env)
    local what = tostring(description.name or description.kind or "window")
    for kind, value in pairs(description.callbacks or {}) do
        local f = resolveFunction(env, value, what)
        if f then vurel.addCallback(handle, kind, f) end
    end
    for kind, value in pairs(description.mouseCallbacks or {}) do
        local f = resolveFunction(env, value, what)
        if f then vurel.addMouseCallback(handle, kind, f) end
    end
    for kind, value in pairs(description.keyboardCallbacks or {}) do
        local f = resolveFunction(env, value, what)
        if f then vurel.addKeyboardCallback(handle, kind, f) end
    end
    for _, hotKey in ipairs(description.hotKeys or {}) do
        local f = resolveFunction(env, hotKey.call, what)
        if f then vurel.addHotKey(handle, hotKey.key or {}, f) end
    end
end

local build

local function fill(handle, description, env)
    applyProperties(handle, description)
    if description.layout ~= nil then
        vurel.setLayout(handle, description.layout)
    end
    for _, child in ipairs(description.children or {}) do
        if type(child) ~= "table" then
            error("a child of " .. tostring(description.name or description.kind) .. " is no table", 0)
        end
        local childHandle = build(child, env)
        vurel.insert(handle, childHandle)
    end
    connect(handle, description, env)
    if description.visible ~= nil then
        vurel.set(handle, "visible", description.visible)
    end
end

build = function(description, env)
    if type(description.kind) ~= "string" then
        error("a widget description without a kind", 0)
    end
    local handle = vurel.create(description.kind)
    local ok, err = pcall(fill, handle, description, env)
    if not ok then
        vurel.destroy(handle)
        error(err, 0)
    end
    return handle
end

local description, env = loadDescription(resourceName)
if targetWindow ~= nil then
    fill(targetWindow, description, env)
    return
end
local handle = build(description, env)
local ok, window = pcall(vurel.window, handle)
if not ok then
    vurel.destroy(handle)
    error(window, 0)
end
return window
