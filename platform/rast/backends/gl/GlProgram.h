#pragma once

#include <epoxy/gl.h>

#include <string>
#include <unordered_map>

// One linked GLSL program and the locations of the uniforms the backend sets
// on every draw. A uniform the program lacks has location -1, which GL
// ignores, so effect programs declare only what they use.
//
// Every program reads the vertex attributes at fixed locations: 0 the
// position (x, y, and z, which effect programs may use as a quad number),
// 1 the texture coordinates, 2 the colour. The merged program adds 3, the
// clip rectangle, and 4, the texture slot.
class rastGlProgram {
public:
    struct Uniforms {
        GLint projection = -1;
        GLint modelView = -1;
        GLint flipY = -1;          // -1 for off-screen targets, stored top row first
        GLint color = -1;          // the draw state's colour
        GLint opacity = -1;
        GLint gamma = -1;
        GLint intensity = -1;
        GLint texture = -1;        // the sampler, always unit 0
        GLint hasTexture = -1;     // 0 when drawing untextured
        GLint premultiplied = -1;  // 1 when the texture holds premultiplied colour
        GLint layer = -1;          // texture array layer
        // The merged program's: a sampler for each texture unit, and a
        // premultiplied flag for each.
        GLint textures = -1;
        GLint slotPremultiplied = -1;
    };

    // Compiles and links; on failure logs under "VUREL" at level 16 and stays invalid.
    rastGlProgram(char const* name, std::string const& vertexSource, std::string const& fragmentSource);
    ~rastGlProgram();
    rastGlProgram(rastGlProgram const&) = delete;
    rastGlProgram& operator=(rastGlProgram const&) = delete;

    bool isValid() const { return program_ != 0; }
    GLuint getName() const { return program_; }
    Uniforms const& getUniforms() const { return uniforms_; }
    // The location of an effect parameter, looked up once.
    GLint getParameterLocation(char const* name);

    // Splits an effect file into its two stages, each introduced by a line
    // "-- vertex" or "-- fragment"; text before the first marker is a comment.
    static bool splitStages(std::string const& text, std::string& vertex, std::string& fragment);

private:
    static GLuint compileStage_(char const* name, GLenum type, std::string const& source);
    void findUniforms_();

    GLuint program_ = 0;
    Uniforms uniforms_;
    std::unordered_map<std::string, GLint> parameters_;
};
