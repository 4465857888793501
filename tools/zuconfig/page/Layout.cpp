// In four steps, each of which takes the result of the one before: edges that close a circle are
// turned out; every box gets the layer behind the last one that leads to it, and edges over several
// layers a place in each between; in a layer, what belongs to neighbours is put in their order; and
// at last everything is moved as near to its neighbours as the others leave room for.
#include "page/Layout.hpp"

#include <algorithm>
#include <numeric>

namespace zuconfig {

namespace {

constexpr double columnGap = 56;
constexpr double rowGap = 14;
constexpr double waypointHeight = 2;
constexpr std::size_t mostWaypoints = 10000;  // graphs with more of them are no picture anyway

using Numbers = std::vector<std::size_t>;

class Arrangement {
 public:
  Arrangement(Layout& layout, const std::vector<Numbers>& targets)
      : layout(layout), items(layout.boxes) {
    findEdges(targets);
    assignLayers();
    addWaypoints();
    sortLayers();
    place();
    moveToOrigin();
  }

 private:
  // Depth first; an edge to a box that is still open closes a circle.
  void findEdges(const std::vector<Numbers>& targets) {
    enum State { NEW, OPEN, DONE };
    std::vector<State> states(items.size(), NEW);
    std::vector<std::pair<std::size_t, std::size_t>> way;  // a box and how many edges were taken
    for (std::size_t start = 0; start < items.size(); ++start) {
      if (states[start] == NEW) way.emplace_back(start, 0);
      while (!way.empty()) {
        const std::size_t box = way.back().first;
        states[box] = OPEN;
        if (way.back().second == targets[box].size()) {
          states[box] = DONE;
          finished.push_back(box);
          way.pop_back();
          continue;
        }
        const std::size_t target = targets[box][way.back().second++];
        layout.edges.push_back({box, target, states[target] == OPEN, {}});
        if (states[target] == NEW) way.emplace_back(target, 0);
      }
    }
  }

  void assignLayers() {
    layerOf.assign(items.size(), 0);
    std::vector<Numbers> forward(items.size());
    for (const Edge& edge : layout.edges) {
      if (!edge.isBack) forward[edge.from].push_back(edge.to);
    }
    for (auto box = finished.rbegin(); box != finished.rend(); ++box) {
      for (const std::size_t target : forward[*box]) {
        layerOf[target] = std::max(layerOf[target], layerOf[*box] + 1);
      }
    }
  }

  void addWaypoints() {
    std::size_t wanted = 0;
    for (const Edge& edge : layout.edges) {
      if (!edge.isBack) wanted += layerOf[edge.to] - layerOf[edge.from] - 1;
    }
    before.resize(items.size());
    after.resize(items.size());
    waypoints.resize(layout.edges.size());
    for (std::size_t i = 0; i < layout.edges.size(); ++i) {
      const Edge& edge = layout.edges[i];
      if (edge.isBack) continue;
      std::size_t last = edge.from;
      for (std::size_t layer = layerOf[edge.from] + 1;
           wanted <= mostWaypoints && layer < layerOf[edge.to]; ++layer) {
        waypoints[i].push_back(items.size());
        connect(last, items.size());
        last = items.size();
        items.push_back({0, waypointHeight});
        layerOf.push_back(layer);
      }
      connect(last, edge.to);
    }
  }

  void connect(std::size_t from, std::size_t to) {
    before.resize(std::max(before.size(), to + 1));
    after.resize(before.size());
    after[from].push_back(to);
    before[to].push_back(from);
  }

  // Starts with the order of reading and lets the neighbours decide, those on the left and those on
  // the right in turn.
  void sortLayers() {
    layers.resize(1 + *std::max_element(layerOf.begin(), layerOf.end()));
    for (std::size_t item = 0; item < items.size(); ++item) layers[layerOf[item]].push_back(item);
    std::vector<double> rank(items.size());
    for (int pass = 0; pass < 8; ++pass) {
      const bool isForward = pass % 2 == 0;
      for (std::size_t i = 0; i < layers.size(); ++i) {
        Numbers& layer = layers[isForward ? i : layers.size() - 1 - i];
        const auto& neighbours = isForward ? before : after;
        for (std::size_t place = 0; place < layer.size(); ++place) {
          rank[layer[place]] = mean(neighbours[layer[place]], rank, static_cast<double>(place));
        }
        std::stable_sort(layer.begin(), layer.end(),
                         [&](std::size_t a, std::size_t b) { return rank[a] < rank[b]; });
        for (std::size_t place = 0; place < layer.size(); ++place) {
          rank[layer[place]] = static_cast<double>(place);
        }
      }
    }
  }

  static double mean(const Numbers& of, const std::vector<double>& values, double otherwise) {
    if (of.empty()) return otherwise;
    const auto add = [&](double sum, std::size_t item) { return sum + values[item]; };
    return std::accumulate(of.begin(), of.end(), 0.0, add) / static_cast<double>(of.size());
  }

  void place() {
    double x = 0;
    for (const Numbers& layer : layers) {
      double widest = 0;
      for (const std::size_t item : layer) widest = std::max(widest, items[item].width);
      for (const std::size_t item : layer) {
        items[item].x = x;
        if (item >= layout.boxes.size()) items[item].width = widest;
      }
      x += widest + columnGap;
    }
    centres.assign(items.size(), 0);
    for (int pass = 0; pass < 12; ++pass) {
      const bool isForward = pass % 2 == 0;
      for (std::size_t i = 0; i < layers.size(); ++i) {
        const Numbers& layer = layers[isForward ? i : layers.size() - 1 - i];
        placeLayer(layer, isForward ? before : after);
      }
    }
    for (std::size_t item = 0; item < items.size(); ++item) {
      items[item].y = centres[item] - items[item].height / 2;
    }
  }

  // As near to the means of the neighbours as the order and the gaps allow, by least squares: items
  // that would overlap form a block, which moves as a whole.
  void placeLayer(const Numbers& layer, const std::vector<Numbers>& neighbours) {
    struct Block {
      double sum;
      std::size_t count;
      double mean() const { return sum / static_cast<double>(count); }
    };
    std::vector<double> offsets;
    std::vector<Block> blocks;
    for (std::size_t i = 0; i < layer.size(); ++i) {
      const double half = items[layer[i]].height / 2;
      offsets.push_back(i == 0 ? 0
                               : offsets.back() + items[layer[i - 1]].height / 2 + rowGap + half);
      const double wanted = mean(neighbours[layer[i]], centres, centres[layer[i]]);
      blocks.push_back({wanted - offsets.back(), 1});
      while (blocks.size() > 1 && blocks.rbegin()[1].mean() > blocks.back().mean()) {
        const Block last = blocks.back();
        blocks.pop_back();
        blocks.back().sum += last.sum;
        blocks.back().count += last.count;
      }
    }
    std::size_t i = 0;
    for (const Block& block : blocks) {
      for (std::size_t n = 0; n < block.count; ++n, ++i) {
        centres[layer[i]] = block.mean() + offsets[i];
      }
    }
  }

  void moveToOrigin() {
    double top = items.front().y;
    for (const Box& item : items) top = std::min(top, item.y);
    for (Box& item : items) {
      item.y -= top;
      layout.width = std::max(layout.width, item.x + item.width);
      layout.height = std::max(layout.height, item.y + item.height);
    }
    for (std::size_t i = 0; i < layout.edges.size(); ++i) {
      for (const std::size_t item : waypoints[i]) layout.edges[i].waypoints.push_back(items[item]);
    }
    std::copy_n(items.begin(), layout.boxes.size(), layout.boxes.begin());
  }

  Layout& layout;
  std::vector<Box> items;          // the boxes, then the waypoints
  Numbers finished;                // boxes, each behind all that it leads to
  Numbers layerOf;                 // of each item
  std::vector<Numbers> layers;     // items, top down
  std::vector<Numbers> before;     // the neighbours on the left
  std::vector<Numbers> after;      // and those on the right
  std::vector<Numbers> waypoints;  // of each edge
  std::vector<double> centres;     // of the items, in height
};

}  // namespace

Layout::Layout(std::vector<Box> sizes, const std::vector<std::vector<std::size_t>>& targets)
    : boxes(std::move(sizes)) {
  Arrangement(*this, targets);
}

}  // namespace zuconfig
