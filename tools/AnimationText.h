// Animation (".AM", ".TA") and spline-path (".SPL") files for the tools that read them: telling the
// kind, reading, and printing them as the library will see them.
#pragma once

#include "ZQAnimationFile.h"

#include <cstdint>
#include <string>
#include <vector>

namespace zqtools {

enum class AnimationKind { Am, Ta, Spl, Unknown };

/// By the name as the library tells it (".AM" before ".TA"; ".SPL"), else by the magic; Spl only by name.
AnimationKind AnimationKindOf(const std::string& path, const std::vector<uint8_t>& bytes);
/// The kind the name alone gives, as the library's loaders pick it; Unknown when none.
AnimationKind AnimationKindByName(const std::string& path);

std::string SceneName(const ZQ::formats::AnimationScene& scene);
std::string ChunkName(const ZQ::formats::AnimationFrame& frame);

/// Parses an Am or Ta file; on a wrong magic prints that the library drops it and returns false.
bool ReadAnimation(const std::string& path, const std::vector<uint8_t>& bytes, AnimationKind kind,
                   ZQ::formats::AnimationFile& file);

/// Prints every scene and frame, or path and key, with counts, ceilings and registered names, to
/// standard output. 1 when the file is not one the library reads, else 0.
int PrintAnimationFile(const std::string& path, const std::vector<uint8_t>& bytes, AnimationKind kind);

} // namespace zqtools
