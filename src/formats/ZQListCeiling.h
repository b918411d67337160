// The most entries one of the library's pointer lists holds (frames of a scene, keys of a path, players'
// instances): the ceiling of the original private heap, 0x14000 bytes for two arrays of four-byte places.
// The library and the authoring tools share it, so that they never disagree on what a file keeps.
#pragma once

namespace ZQ {
namespace formats {

const unsigned int kListCeiling = 0x14000 / 8;

} // namespace formats
} // namespace ZQ
