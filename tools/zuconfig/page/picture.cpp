#include "page/picture.hpp"

#include <algorithm>
#include <cmath>
#include <optional>

#include "page/Layout.hpp"
#include "page/embedded.hpp"
#include "page/html.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

// In pixels. The text is in a font whose characters are all 0.6 of its size wide, or nearly so.
constexpr double margin = 12;
constexpr double padding = 10;
constexpr double lineHeight = 17;
constexpr double characterWidth = 8;
constexpr std::size_t mostCharacters = 40;

// A line of a box.
struct Line {
  const char* kind;
  std::string text;
};

std::string cut(const std::string& text) {
  if (width(text) <= mostCharacters) return text;
  std::size_t start = text.size();
  for (std::size_t count = 1; count < mostCharacters; ++count) {
    do --start;
    while ((text[start] & 0xC0) == 0x80);
  }
  return "…" + text.substr(start);
}

// The directory, the name, and what there is to remark.
std::vector<Line> linesOf(const ListedFile& file) {
  std::vector<Line> lines;
  const std::size_t slash = file.name.rfind('/') + 1;
  if (slash > 0) lines.push_back({"dim", cut(file.name.substr(0, slash))});
  lines.push_back({"name", cut(file.name.substr(slash))});
  const Node& node = *file.nodes.front();
  if (node.kind == Node::MISSING) lines.push_back({"bad", "not found"});
  if (!node.shadowed.empty()) {
    lines.push_back({"warn", "shadows " + counted(node.shadowed.size(), "file")});
  }
  return lines;
}

Box sizeOf(const std::vector<Line>& lines) {
  std::size_t longest = 0;
  for (const Line& line : lines) longest = std::max(longest, width(line.text));
  return {static_cast<double>(longest) * characterWidth + 2 * padding,
          static_cast<double>(lines.size()) * lineHeight + 2 * padding - 6};
}

// Coordinates are whole, so that no machine rounds them in a way of its own.
long whole(double number) {
  return std::lround(number + margin);
}

class Picture {
 public:
  Picture(std::ostream& out, const std::vector<ListedFile>& files) : out(out), files(files) {
    std::vector<Box> boxes;
    std::vector<std::vector<std::size_t>> targets;
    for (const ListedFile& file : files) {
      lines.push_back(linesOf(file));
      boxes.push_back(sizeOf(lines.back()));
      targets.push_back(file.includes);
    }
    layout.emplace(std::move(boxes), targets);
    for (const Edge& edge : layout->edges) hasCircle |= edge.isBack;
  }

  // The attributes draw the same without a style, if a little plainer.
  void start(const char* attributes) {
    const double room = hasCircle ? backDepth : 0;  // below the boxes
    const long height = whole(layout->height + room + margin);
    out << "<svg " << attributes << " class=\"graph\" viewBox=\"0 0 "
        << whole(layout->width + margin) << " " << height << "\" width=\""
        << whole(layout->width + margin) << "\" height=\"" << height
        << "\" fill=\"none\" stroke=\"currentColor\" font-family=\"ui-monospace, monospace\" "
           "font-size=\"13\" role=\"group\" aria-label=\"Include graph\">\n";
  }

  void draw(const std::string* prefix) {
    for (const Edge& edge : layout->edges) {
      if (!edge.isBack) drawForward(edge);
    }
    for (std::size_t i = 0; i < files.size(); ++i) {
      if (prefix != nullptr) {
        out << "<a href=\"" << linkTo(*prefix + std::to_string(i)) << "\">";
      }
      drawBox(i);
      if (prefix != nullptr) out << "</a>";
      out << "\n";
    }
    for (const Edge& edge : layout->edges) {
      if (edge.isBack) drawBack(layout->boxes[edge.from], layout->boxes[edge.to]);
    }
    out << "</svg>\n";
  }

 private:
  static constexpr double backDepth = 34;

  void drawForward(const Edge& edge) {
    const Box& from = layout->boxes[edge.from];
    const Box& to = layout->boxes[edge.to];
    double x = from.x + from.width;
    double y = from.y + from.height / 2;
    out << "<path class=\"edge\" opacity=\".6\" d=\"M" << whole(x) << " " << whole(y);
    const auto curveTo = [&](const Box& box, double length) {
      const double middle = (x + box.x) / 2;
      const double centre = box.y + box.height / 2;
      out << "C" << whole(middle) << " " << whole(y) << " " << whole(middle) << " " << whole(centre)
          << " " << whole(box.x) << " " << whole(centre);
      x = box.x + length;
      y = centre;
      if (length > 0) out << "H" << whole(x);
    };
    for (const Box& waypoint : edge.waypoints) curveTo(waypoint, waypoint.width);
    curveTo(to, 0);
    out << "\"/>";
    drawTip(to.x, y, -7, -4, -7, 4);
    out << "\n";
  }

  // Below the boxes, back to where the circle began. A file that includes itself gets a loop.
  void drawBack(const Box& from, const Box& to) {
    const bool isLoop = &from == &to;
    const double x = from.x + from.width * (isLoop ? 1 : 0.67);
    const double y = from.y + from.height * (isLoop ? 0.6 : 1);
    const double end = to.x + to.width * (isLoop ? 0.75 : 0.33);
    const double bottom = std::max(from.y + from.height, to.y + to.height) + backDepth;
    out << "<g class=\"bad\"><path stroke-dasharray=\"5 3\" d=\"M" << whole(x) << " " << whole(y)
        << "C" << whole(isLoop ? x + backDepth : x) << " " << whole(isLoop ? y : bottom) << " "
        << whole(end) << " " << whole(bottom) << " " << whole(end) << " " << whole(to.y + to.height)
        << "\"/>";
    drawTip(end, to.y + to.height, -4, 7, 4, 7);
    out << "<text stroke=\"none\" fill=\"currentColor\" text-anchor=\"middle\" x=\""
        << whole((x + end) / 2) << "\" y=\"" << whole(bottom) << "\">cycle</text></g>\n";
  }

  // The tip of an arrow, from its sides' ends to x and y.
  void drawTip(double x, double y, double ax, double ay, double bx, double by) {
    out << "<path d=\"M" << whole(x + ax) << " " << whole(y + ay) << "L" << whole(x) << " "
        << whole(y) << "L" << whole(x + bx) << " " << whole(y + by) << "\"/>";
  }

  void drawBox(std::size_t number) {
    const Box& box = layout->boxes[number];
    const bool isMissing = files[number].nodes.front()->kind == Node::MISSING;
    out << "<g><title>" << inHtml(files[number].name) << "</title><rect rx=\"5\" x=\""
        << whole(box.x) << "\" y=\"" << whole(box.y) << "\" width=\"" << whole(box.width - margin)
        << "\" height=\"" << whole(box.height - margin) << "\""
        << (isMissing ? " class=\"bad\" stroke-dasharray=\"5 3\"" : "") << "/>";
    double y = box.y + padding + 10;
    for (const Line& line : lines[number]) {
      out << "<text class=\"" << line.kind << "\" stroke=\"none\" fill=\"currentColor\" x=\""
          << whole(box.x + padding) << "\" y=\"" << whole(y) << "\">" << inHtml(line.text)
          << "</text>";
      y += lineHeight;
    }
    out << "</g>";
  }

  std::ostream& out;
  const std::vector<ListedFile>& files;
  std::vector<std::vector<Line>> lines;  // of each file
  std::optional<Layout> layout;
  bool hasCircle = false;
};

}  // namespace

void writePicture(std::ostream& out, const std::vector<ListedFile>& files) {
  Picture picture(out, files);
  picture.start("xmlns=\"http://www.w3.org/2000/svg\"");
  out << "<style>" << embedded::graphStyle.text << "</style>\n";
  picture.draw(nullptr);
}

void writePicture(std::ostream& out, const std::vector<ListedFile>& files,
                  const std::string& prefix) {
  Picture picture(out, files);
  picture.start("");
  picture.draw(&prefix);
}

}  // namespace zuconfig
