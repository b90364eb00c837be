// The order in which the framework's map of texts is walked: 17 buckets, in each the newest entry first.
#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

namespace test {

class HashOrder {
public:
    // A key that is there keeps its place and shows the new text.
    void set(const std::string& key, const std::string& shown)
    {
        Bucket& bucket = bucket_of(key);
        const auto place = std::ranges::find(bucket, key, &Entry::first);
        if (place != bucket.end())
            place->second = shown;
        else
            bucket.insert(bucket.begin(), { key, shown });
    }
    void erase(const std::string& key)
    {
        std::erase_if(bucket_of(key), [&key](const Entry& entry) { return entry.first == key; });
    }
    // What is shown, with a comma between each two.
    std::string walked() const
    {
        std::string line;
        for (const Bucket& bucket : buckets_) {
            for (const Entry& entry : bucket)
                line += (line.empty() ? "" : ",") + entry.second;
        }
        return line;
    }

private:
    using Entry = std::pair<std::string, std::string>;
    using Bucket = std::vector<Entry>;

    Bucket& bucket_of(const std::string& key)
    {
        unsigned hash = 0;
        for (const char c : key)
            hash = hash * 33 + static_cast<unsigned>(static_cast<signed char>(c));
        return buckets_[hash % buckets_.size()];
    }

    std::array<Bucket, 17> buckets_;
};

} // namespace test
