// Slopes to scale: hachures from a crest line to its foot line.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tools/zenro/map/page.h"

namespace zm::tool {

/// A crest and its foot, both in the course of the crest.
struct Slope {
    Chain crest, foot;
};

/// Crests and feet by the value that they have in common.
class Slopes {
 public:
    void AddCrest(const std::string& key, const Chain& chain) { m_parts[key].crests.push_back(chain); }
    void AddFoot(const std::string& key, const Chain& chain) { m_parts[key].feet.push_back(chain); }
    /// Pairs one crest with one foot of a value.
    /// \return  the values that have more, or one without the other
    std::vector<std::string> Build();

    /// The slope of a value; null where there is no pair.
    const Slope* Of(const std::string& key) const;
    /// What lies between the crests and the feet.
    std::vector<Shape> areas() const;
    /// The crests that have no foot.
    std::vector<Chain> LoneCrests() const;

 private:
    struct Parts {
        std::vector<Chain> crests, feet;
    };
    std::map<std::string, Parts> m_parts;
    std::map<std::string, Slope> m_slopes;
};

struct Hachure {
    Chain line;
    bool whole;  // down to the foot
};

/// The hachures of a slope: 2.0 mm apart along the crest, 3.0 mm at a reinforced scarp, long ones to the point of the
/// foot at the same share of its length. Slopes have long and short ones in turn, half as long, scarps long ones alone.
/// None is shorter than 2.0 mm or 1.0 mm on paper, and none crosses another.
/// \param code  the symbol of the crest
std::vector<Hachure> HachuresOf(const Slope& slope, int code, const Page& page);

}  // namespace zm::tool
