#include "rast/backends/gl/GlProgram.h"

#include <sstream>
#include <vector>

#include "orm/Log.h"

namespace {

std::string infoLog(GLuint object, bool isProgram) {
    GLint length = 0;
    if (isProgram)
        glGetProgramiv(object, GL_INFO_LOG_LENGTH, &length);
    else
        glGetShaderiv(object, GL_INFO_LOG_LENGTH, &length);
    if (length <= 1)
        return {};
    std::vector<char> text(static_cast<size_t>(length));
    if (isProgram)
        glGetProgramInfoLog(object, length, nullptr, text.data());
    else
        glGetShaderInfoLog(object, length, nullptr, text.data());
    return std::string(text.data());
}

}  // namespace

rastGlProgram::rastGlProgram(char const* name, std::string const& vertexSource, std::string const& fragmentSource) {
    GLuint const vertex = compileStage_(name, GL_VERTEX_SHADER, vertexSource);
    GLuint const fragment = compileStage_(name, GL_FRAGMENT_SHADER, fragmentSource);
    if (vertex && fragment) {
        GLuint const program = glCreateProgram();
        glAttachShader(program, vertex);
        glAttachShader(program, fragment);
        glLinkProgram(program);
        GLint linked = GL_FALSE;
        glGetProgramiv(program, GL_LINK_STATUS, &linked);
        if (linked)
            program_ = program;
        else {
            orm_vlogf("VUREL", 16, "Program %s does not link: %s", name, infoLog(program, true).c_str());
            glDeleteProgram(program);
        }
    }
    // Shaders attached to a linked program live on inside it.
    if (vertex)
        glDeleteShader(vertex);
    if (fragment)
        glDeleteShader(fragment);
    if (program_)
        findUniforms_();
}

rastGlProgram::~rastGlProgram() {
    if (program_)
        glDeleteProgram(program_);
}

GLint rastGlProgram::getParameterLocation(char const* name) {
    auto found = parameters_.find(name);
    if (found != parameters_.end())
        return found->second;
    GLint const location = program_ ? glGetUniformLocation(program_, name) : -1;
    parameters_.emplace(name, location);
    return location;
}

bool rastGlProgram::splitStages(std::string const& text, std::string& vertex, std::string& fragment) {
    vertex.clear();
    fragment.clear();
    std::string* current = nullptr;
    std::istringstream lines(text);
    std::string line;
    while (std::getline(lines, line)) {
        if (line.rfind("-- vertex", 0) == 0)
            current = &vertex;
        else if (line.rfind("-- fragment", 0) == 0)
            current = &fragment;
        else if (current)
            current->append(line).append("\n");
    }
    return !vertex.empty() && !fragment.empty();
}

GLuint rastGlProgram::compileStage_(char const* name, GLenum type, std::string const& source) {
    GLuint const shader = glCreateShader(type);
    char const* text = source.c_str();
    glShaderSource(shader, 1, &text, nullptr);
    glCompileShader(shader);
    GLint compiled = GL_FALSE;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    if (compiled)
        return shader;
    orm_vlogf("VUREL", 16, "Program %s: the %s stage does not compile: %s", name,
              type == GL_VERTEX_SHADER ? "vertex" : "fragment", infoLog(shader, false).c_str());
    glDeleteShader(shader);
    return 0;
}

void rastGlProgram::findUniforms_() {
    auto find = [this](char const* uniform) { return glGetUniformLocation(program_, uniform); };
    uniforms_.projection = find("uProjection");
    uniforms_.modelView = find("uModelView");
    uniforms_.flipY = find("uFlipY");
    uniforms_.color = find("uColor");
    uniforms_.opacity = find("uOpacity");
    uniforms_.gamma = find("uGamma");
    uniforms_.intensity = find("uIntensity");
    uniforms_.texture = find("uTexture");
    uniforms_.hasTexture = find("uHasTexture");
    uniforms_.premultiplied = find("uPremultiplied");
    uniforms_.layer = find("uLayer");
    uniforms_.textures = find("uTextures");
    uniforms_.slotPremultiplied = find("uSlotPremultiplied");
}
