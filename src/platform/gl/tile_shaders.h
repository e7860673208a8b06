#pragma once

// Private to this folder: the programs of TilePainter.

namespace vantrel {

inline constexpr char kTileVertexShader[] = R"(#version 150
uniform vec2 target;
in vec2 device;
in vec2 texel;
in vec2 footprint;
in vec2 origin;
out vec2 texelHere;
flat out vec2 texelsHere;
flat out vec2 originHere;
void main() {
  texelHere = texel;
  texelsHere = footprint;
  originHere = origin;
  vec2 place = device / target * 2.0 - 1.0;
  gl_Position = vec4(place.x, -place.y, 0.0, 1.0);
}
)";

/// What both kinds of fragment shader begin with.
inline constexpr char kTileFragmentCommon[] = R"(#version 150
uniform sampler2D tile;
uniform vec2 target;
uniform vec4 retained;
uniform float excludedOpacity;
in vec2 texelHere;
flat in vec2 texelsHere;
flat in vec2 originHere;
out vec4 color;
vec2 devicePixel() {
  return vec2(gl_FragCoord.x, target.y - gl_FragCoord.y);
}
float opacity() {
  vec2 at = devicePixel();
  bool isRetained = all(greaterThan(at, retained.xy)) && all(lessThan(at, retained.zw));
  return isRetained ? 1.0 : excludedOpacity;
}
)";

/// Each source pixel a square, by a table of the source pixels of all columns and rows.
inline constexpr char kSharpTileShader[] = R"(
uniform sampler2D sourcePixels;
uniform ivec2 firstVisible;
void main() {
  ivec2 at = ivec2(devicePixel()) - firstVisible;
  vec2 source = vec2(texelFetch(sourcePixels, ivec2(at.x, 0), 0).r,
                     texelFetch(sourcePixels, ivec2(at.y, 1), 0).r);
  color = texelFetch(tile, ivec2(source - originHere), 0) * opacity();
}
)";

/// The mean of the texels under a box of texelsHere. Each half of the box is no wider than a texel,
/// so that one fetch between two texels weighs both by how much of them it covers.
inline constexpr char kSmoothTileShader[] = R"(
vec2 between(vec2 end, vec2 width) {
  vec2 boundary = floor(end);
  return boundary - 0.5 + min((end - boundary) / width, 1.0);
}
void main() {
  vec2 size = vec2(textureSize(tile, 0));
  vec2 halfBox = 0.5 * texelsHere;
  vec2 low = between(texelHere, halfBox) / size;
  vec2 high = between(texelHere + halfBox, halfBox) / size;
  vec4 sum = texture(tile, low) + texture(tile, vec2(high.x, low.y)) +
             texture(tile, vec2(low.x, high.y)) + texture(tile, high);
  color = sum * (0.25 * opacity());
}
)";

}  // namespace vantrel
