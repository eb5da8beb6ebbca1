// SPDX-License-Identifier: Apache-2.0

// A class of one's own, written with the same means as the framework's: operations, properties, an override with
// super, and a class that is made while the program runs.

#include <cstdio>

#include "foundation/NSString.h"
#include "runtime/Runtime.h"

using namespace brindle;

namespace {

/// Something with a name and a price.
class Article : public NSObject {
    BRINDLE_OBJECT(Article, NSObject)

public:
    Ref<NSString> title() const { return send<"title", Ref<NSString>>(); }
    void setTitle(NSString* title) { send<"setTitle:">(title); }
    double price() const { return send<"price", double>(); }
    void setPrice(double price) { send<"setPrice:">(price); }

private:
    Ref<NSString> title_;
    double price_ = 0;
};

/// An article that is cheaper than it says.
class DiscountedArticle : public Article {
    BRINDLE_OBJECT(DiscountedArticle, Article)
};

}

// The properties give the accessors; only what is special needs a function.
template <> struct Article::Methods<struct Selling> {
    static Ref<NSString> description(Article& self)
    {
        return NSString::cls().stringWithFormat("%@ for %.2f"_ns, self.title().get(), self.price());
    }
    static void table(Builder& t)
    {
        t.properties({
            property<&Article::title_>("title", copied, nonatomic),
            property<&Article::price_>("price", nonatomic),
        });
        t.methods({ { "description", imp<description> } });
    }
};
BRINDLE_RECORD(Article, Selling)

template <> struct DiscountedArticle::Methods<struct Selling> {
    static double price(DiscountedArticle& self)
    {
        return 0.9 * super<DiscountedArticle, "price", double>(self);
    }
    static void table(Builder& t) { t.methods({ { "price", imp<price> } }); }
};
BRINDLE_RECORD(DiscountedArticle, Selling)

namespace {

void show(const char* what, NSObject* object)
{
    std::printf("%s: %s\n", what, object->description()->UTF8String());
}

/// A subclass made while the program runs, as a language binding would do it.
Ref<Article> makeFreeArticle()
{
    Class* const cls = objc_allocateClassPair(Article::cls(), "FreeArticle", 0);
    const auto price = +[](NSObject*, SEL) { return 0.0; };
    class_addMethod(cls, selector<"price">, reinterpret_cast<IMP>(price), "d@:");
    objc_registerClassPair(cls);
    return cast<Article>(cls->send<"new", Ref<NSObject>>());
}

void listProperties(Class* cls)
{
    unsigned count = 0;
    objc_property_t* const list = class_copyPropertyList(cls, &count);
    for (unsigned i = 0; i < count; ++i)
        std::printf("  %s: %s\n", property_getName(list[i]), property_getAttributes(list[i]));
    releaseBuffer(list);
}

}

int main()
{
    const auto article = make<Article>();
    article->setTitle("Lamp"_ns);
    article->setPrice(20);
    show("an article", article.get());

    const auto discounted = make<DiscountedArticle>();
    discounted->setTitle("Chair"_ns);
    discounted->setPrice(50);
    show("a discounted one", discounted.get());

    const auto free = makeFreeArticle();
    free->setTitle("Poster"_ns);
    show("one of a class made at run time", free.get());

    std::printf("what %s declares:\n", class_getName(Article::cls()));
    listProperties(Article::cls());

    Article* const nobody = nullptr;
    std::printf("the price of nothing: %g\n", maybe(nobody)->price());
    return 0;
}
