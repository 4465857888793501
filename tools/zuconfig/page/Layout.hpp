// Where the boxes of a drawn graph stand, and which way its edges go: layer by layer from left to
// right, with few crossings.
#ifndef TOOLS_ZUCONFIG_PAGE_LAYOUT_HPP
#define TOOLS_ZUCONFIG_PAGE_LAYOUT_HPP

#include <cstddef>
#include <vector>

namespace zuconfig {

struct Box {
  double width = 0;
  double height = 0;
  double x = 0;  // of its left upper corner
  double y = 0;
};

struct Edge {
  std::size_t from;
  std::size_t to;
  bool isBack = false;         // closes a circle
  std::vector<Box> waypoints;  // free room between other boxes that the edge goes through
};

struct Layout {
  // The sizes of the boxes are given; the first one is the root. Edges from every box, by number.
  Layout(std::vector<Box> sizes, const std::vector<std::vector<std::size_t>>& targets);

  std::vector<Box> boxes;
  std::vector<Edge> edges;
  double width = 0;
  double height = 0;
};

}  // namespace zuconfig

#endif
