#pragma once

namespace sendrel {

// The kind of a tree list: the trees left standing or the trees cut. Stored as "S" or "H" in
// every Standing_Harvested column.
enum class RunKind { Standing, Harvested };

}  // namespace sendrel
