// The C library's sine, cosine and their kin, as the library and all that links it have them on Windows.
#include <emmintrin.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <thread>

#include "tests/support/random.h"

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

struct OfAngle {
    double angle, sine, cosine, tangent;
};
struct OfNumber {
    double number, arcCosine, arcSine, arcTangent;
};
struct OfTwo {
    double x, y, arcTangent, hypotenuse;
};

// Rounded from 3000 bits: multiples of half pi, the largest number, the one that comes nearest to a multiple of half pi,
// and others.
constexpr OfAngle kAngles[] = {
    {0x1.921fb54442d18p+1, 0x1.1a62633145c07p-53, -0x1.0000000000000p+0, -0x1.1a62633145c07p-53},
    {0x1.921fb54442d18p+0, 0x1.0000000000000p+0, 0x1.1a62633145c07p-54, 0x1.d02967c31cdb5p+53},
    {0x1.921fb54442d18p+2, -0x1.1a62633145c07p-52, 0x1.0000000000000p+0, -0x1.1a62633145c07p-52},
    {0x1.2d97c7f3321d2p+2, -0x1.0000000000000p+0, -0x1.a79394c9e8a0ap-53, 0x1.3570efd768923p+52},
    {0x1.921fb54442d18p-1, 0x1.6a09e667f3bccp-1, 0x1.6a09e667f3bcdp-1, 0x1.fffffffffffffp-1},
    {0x1.921fb54442d19p-1, 0x1.6a09e667f3bcdp-1, 0x1.6a09e667f3bccp-1, 0x1.0000000000001p+0},
    {0x1.0f0cf064dd592p+73, -0x1.b453ab76bf397p-1, 0x1.0be2cef01c8f4p-1, -0x1.a0f79c1b6b257p+0},
    {-0x1.0f0cf064dd592p+73, 0x1.b453ab76bf397p-1, 0x1.0be2cef01c8f4p-1, 0x1.a0f79c1b6b257p+0},
    {0x1.86a0000000000p+16, 0x1.24daa9c527e96p-5, -0x1.ffac3841b3da7p-1, -0x1.250a9d503313dp-5},
    {0x1.7e43c8800759cp+996, -0x1.a2c16b010e385p-1, -0x1.2699022adc4c1p-1, 0x1.6be411f37ac77p+0},
    {0x1.fffffffffffffp+1023, 0x1.452fc98b34e97p-8, -0x1.fffe62ecfab75p-1, -0x1.4530cfe729484p-8},
    {0x1.6ac5b262ca1ffp+849, 0x1.0000000000000p+0, -0x1.14ae72e6ba22fp-61, -0x1.d9ba9a7975636p+60},
    {0x1.6000000000000p+2, -0x1.693c94e0ab057p-1, 0x1.6ad6c3c07d448p-1, -0x1.fdbd31615b07ap-1},
    {-0x1.0000000000000p+1, -0x1.d18f6ead1b446p-1, -0x1.aa22657537205p-2, 0x1.17af62e0950f8p+1},
    {0x1.b7cdfd9d7bdbbp-34, 0x1.b7cdfd9d7bdbbp-34, 0x1.0000000000000p+0, 0x1.b7cdfd9d7bdbbp-34},
    {-0x1.01297d23ab683p-995, -0x1.01297d23ab683p-995, 0x1.0000000000000p+0, -0x1.01297d23ab683p-995},
    {0x1.0000000000000p+63, 0x1.fff6dfd42dc54p-1, 0x1.82aa375b3c33ep-7, 0x1.52f50e757941dp+6},
    {0x1.0000000000001p+64, 0x1.3a16092befa68p-1, -0x1.9458057e5f704p-1, -0x1.8db61140098cbp-1},
    {-0x1.3bb1124bad9c0p+1, -0x1.400c4290189a7p-1, -0x1.8fa43aea28743p-1, 0x1.9a075d0ff3693p-1},
    {-0x1.38d6d1e3c79efp+2, 0x1.f81d8da6a1d4fp-1, 0x1.6607d6f11a0b2p-3, 0x1.6874363995598p+2},
    {0x1.0e797dcad0efcp+1, 0x1.b68b3a50a835fp-1, -0x1.083daf73a7d6bp-1, -0x1.a8ddeae8c2d61p+0},
    {-0x1.7f18dab4046c8p+2, 0x1.2bf6b78461020p-2, 0x1.e98a3f464faecp-1, 0x1.39b9dafd47c8dp-2},
    {0x1.0133c3d4572c0p-1, 0x1.ed0a5c1943558p-2, 0x1.c0bea25bd706dp-1, 0x1.1945171b22b88p-1},
    {-0x1.e15ef4bae9358p+0, -0x1.e7a9e4aee2d03p-1, -0x1.37f325c7869eap-2, 0x1.9032dc111051fp+1},
    {-0x1.8c08704a1cf72p+2, 0x1.853aab16bb2dap-4, 0x1.fdaedd15e9a2ep-1, 0x1.86ffa0d23c42fp-4},
    {0x1.aa650a02f4e00p-4, 0x1.a99ffe1815ac5p-4, 0x1.fd3a6fb4311a9p-1, 0x1.abf11003ec59dp-4},
    {-0x1.9e6765565fb89p+2, -0x1.868ddf162f8bdp-3, 0x1.f69a9b67d4f11p-1, -0x1.8ddb028074e84p-3},
    {-0x1.dba0b38951580p-1, -0x1.9a1c697ca85fcp-1, 0x1.32847b25bea6fp-1, -0x1.568526897680bp+0},
    {-0x1.8168d7a50bb5fp+2, 0x1.0866423ffee13p-2, 0x1.eea373e40454ap-1, 0x1.11ae01752f9e0p-2},
    {-0x1.6eb89ca2485f9p+2, 0x1.0cff42345e57fp-1, 0x1.b3a487afbf3e2p-1, 0x1.3c25456c9ecd5p-1},
    {-0x1.0e85f22584bc8p+0, -0x1.bdd3521bfe028p-1, 0x1.f785ae36912dcp-2, -0x1.c554f3929ce73p+0},
    {0x1.24dc086f54b04p+2, -0x1.fb3d89e2cff60p-1, -0x1.169a1ba24bbe1p-3, 0x1.d216fc156adc3p+2},
    {-0x1.5112cd25e2b8ep+2, 0x1.b350b47fac92ap-1, 0x1.0d86d449380a9p-1, 0x1.9d77dac969e52p+0},
    {-0x1.eff4adb2bd636p+1, 0x1.569a94d0468e4p-1, -0x1.7c7b699e23526p-1, -0x1.cd0759868e8c4p-1},
    {0x1.c8b87dc52ebf8p+0, 0x1.f466782db4622p-1, -0x1.b1789290d3efap-3, -0x1.2786f6f7001aep+2},
    {0x1.9125afb6edb56p+2, -0x1.f40622c873ccfp-7, 0x1.fff0bd25e62c5p-1, -0x1.f4150ab200945p-7},
    {0x1.1456438652930p+0, 0x1.c36d7067e6f46p-1, 0x1.e3250f2dbc8f9p-2, 0x1.de6371fe6d823p+0},
    {-0x1.724c13e9c8b38p+0, -0x1.fc0c5dcc38455p-1, 0x1.fbea86e3b407cp-4, -0x1.00110e47f0c50p+3},
    {0x1.9c46cd576fd3bp+52, -0x1.cf5bf59afac64p-1, -0x1.b39ff162cdfb2p-2, 0x1.104c6865e0bc0p+1},
    {0x1.d00326c9c25a8p+292, -0x1.bb2183e757710p-1, -0x1.007961c63f820p-1, 0x1.ba4fcb4182054p+0},
    {-0x1.b158eb9e208ecp+122, 0x1.b22bf86881f74p-1, 0x1.0f5d6704d77adp-1, 0x1.9996b3540e537p+0},
    {-0x1.203c769aa25fcp+813, -0x1.12bfc7821a07ap-1, -0x1.b009c0434a877p-1, 0x1.459993031f3bbp-1},
    {-0x1.ac679e6266fe0p+581, -0x1.fa5179c78e515p-1, 0x1.304218349d4d6p-3, -0x1.aa02efc8576e2p+2},
    {0x1.5c92ac135af60p+373, -0x1.adad286dcf6f3p-1, 0x1.166d96508d67ep-1, -0x1.8b109ce7197f8p+0},
    {0x1.54b05372c165fp+65, 0x1.057a0ddc5293ap-1, 0x1.b83293a6d8032p-1, 0x1.30209867891c8p-1},
    {-0x1.4578cbefac185p+210, -0x1.29cfc1970c7b6p-3, -0x1.fa8ec99481268p-1, 0x1.2d02d7d1ba04cp-3},
    {0x1.608360980b191p+428, 0x1.62cbd1eb1dc58p-1, -0x1.71239c2c15f76p-1, -0x1.ec1b2fcf023a0p-1},
    {-0x1.d87384ace0381p+584, -0x1.49929c2d08356p-7, 0x1.fff95ecc5d7b9p-1, -0x1.4996e0b6d928dp-7},
    {-0x1.f7cc7eb214523p+299, 0x1.e2f40fbd8bdb4p-1, 0x1.540012247c992p-2, 0x1.6ba29b154c1f7p+1},
    {0x1.c9bb8697035b7p+697, -0x1.bd3e01b2089cdp-1, -0x1.f99513256c0a5p-2, 0x1.c2e4da37d8086p+0},
};

constexpr OfNumber kNumbers[] = {
    {0x1.0000000000000p+0, 0x0.0p+0, 0x1.921fb54442d18p+0, 0x1.921fb54442d18p-1},
    {-0x1.0000000000000p+0, 0x1.921fb54442d18p+1, -0x1.921fb54442d18p+0, -0x1.921fb54442d18p-1},
    {0x1.0000000000000p-1, 0x1.0c152382d7366p+0, 0x1.0c152382d7366p-1, 0x1.dac670561bb4fp-2},
    {-0x1.0000000000000p-1, 0x1.0c152382d7366p+1, -0x1.0c152382d7366p-1, -0x1.dac670561bb4fp-2},
    {0x1.fffffffffffffp-1, 0x1.0000000000000p-26, 0x1.921fb50442d18p+0, 0x1.921fb54442d18p-1},
    {0x1.fffeb074a771dp-1, 0x1.25160dad27316p-8, 0x1.90fa9f3695aa5p+0, 0x1.921f0d7e5f90ap-1},
    {-0x1.fffffffffffffp-1, 0x1.921fb52442d18p+1, -0x1.921fb50442d18p+0, -0x1.921fb54442d18p-1},
    {0x1.12e0be826d695p-30, 0x1.921fb53ff74e9p+0, 0x1.12e0be826d695p-30, 0x1.12e0be826d695p-30},
    {-0x1.56e1fc2f8f359p-997, 0x1.921fb54442d18p+0, -0x1.56e1fc2f8f359p-997, -0x1.56e1fc2f8f359p-997},
    {-0x1.060b907585c68p-1, 0x1.0dd5ab188008cp+1, -0x1.131741d97a800p-1, -0x1.e466d4768c383p-2},
    {0x1.30d6ea99ba408p-3, 0x1.6be0757704d28p+0, 0x1.31f9fe69eff7fp-3, 0x1.2e9e2073816a5p-3},
    {0x1.9cd1cbf5ff900p-5, 0x1.8537c0a6ad122p+0, 0x1.9cfe93b2b7ed8p-5, 0x1.9c7879870fbf2p-5},
    {0x1.80240b2bf702ep-1, 0x1.71d3b7b5b62cap-1, 0x1.b26bb2d2cf767p-1, 0x1.49900aceb18bcp-1},
    {0x1.d5e76972e6cc0p-2, 0x1.1813ac4bf08bfp+0, 0x1.e83023e149167p-2, 0x1.b88c4bec6dea1p-2},
    {-0x1.b24daf641b434p-2, 0x1.012011f2f87dep+1, -0x1.c081ba86b8a92p-2, -0x1.9ac1843eac9fep-2},
    {0x1.ebb2f4895ea56p-1, 0x1.2152d310e01dcp-2, 0x1.49cb00800aca1p+0, 0x1.87c4fd317aa52p-1},
    {-0x1.8719c3be78fc4p-1, 0x1.38549f85f6012p+1, -0x1.bd13138f52618p-1, -0x1.4dfc9fa2dd69ap-1},
    {-0x1.4f5e71ab8a168p-3, 0x1.bc3c109a83e12p+0, -0x1.50e2dab2087cap-3, -0x1.4c6b2658e8520p-3},
    {0x1.074ff3abc87c0p-1, 0x1.07d71f3d4ec08p+0, 0x1.14912c0de8221p-1, 0x1.e6686ba3d9595p-2},
    {-0x1.645e2a888a9a2p-1, 0x1.2b9a7411118eap+1, -0x1.8a2a65bbc0977p-1, -0x1.3753459d6c80ep-1},
    {-0x1.69a83940b93c0p-6, 0x1.97c6743e0f2a3p+0, -0x1.69afbe73162a0p-6, -0x1.699930d426210p-6},
    {-0x1.d7da0d84dc8f2p-1, 0x1.5f18b66702957p+1, -0x1.2c11b789c2596p+0, -0x1.7d3dfe4b6a50cp-1},
    {0x1.58818e13deef8p-2, 0x1.3a48a86e182f7p+0, 0x1.5f5c3358aa884p-2, 0x1.4c534bcc99f2bp-2},
    {0x1.0eebaa476f06ap-1, 0x1.036191f61c3dep+0, 0x1.1d7c469c4d275p-1, 0x1.f25e6a576d35bp-2},
    {0x1.2b1d3f9404268p-3, 0x1.6c99b12d731afp+0, 0x1.2c3020b67db46p-3, 0x1.2903a5abf9f44p-3},
    {0x1.807d4168bfcd6p-1, 0x1.714cb30a1554fp-1, 0x1.b2f2b77e704e2p-1, 0x1.49c91aa5aec09p-1},
    {-0x1.7d71f1a8edbdcp-2, 0x1.f3d73eb82ece9p+0, -0x1.86de25cfaff43p-2, -0x1.6d23b095648a8p-2},
    {0x1.8ff70459a54a4p-2, 0x1.2b65dde8a4d24p+0, 0x1.9ae75d6e77fd2p-2, 0x1.7d4e397baa0dep-2},
    {0x1.8289fcfe4c288p-3, 0x1.6183d1aeecf5dp+0, 0x1.84df1caaaeddcp-3, 0x1.7e0b7a58d0cdbp-3},
    {0x1.4740319802398p-3, 0x1.690a99aa33dd1p+0, 0x1.48a8dcd077a3bp-3, 0x1.4481e737db94ep-3},
    {-0x1.66c413b996350p-4, 0x1.a89353ff3e85cp+0, -0x1.6739ebafbb443p-4, -0x1.65da479a3f615p-4},
    {0x1.5c20838bfaf40p-1, 0x1.a57030e5742f7p-1, 0x1.7ecf39a311739p-1, 0x1.31bb5cfbf352cp-1},
    {0x1.c75a7b228d5ecp-1, 0x1.e63e9338bc0bbp-2, 0x1.1890107613ceap+0, 0x1.742d1c942680dp-1},
};

constexpr OfTwo kPairs[] = {
    {-0x1.05cd263ce19a1p+10, -0x1.654ad5c78b115p+15, -0x1.97fc1772c58abp+0, 0x1.6562cf95fd331p+15},
    {0x1.78f788bcc3d2bp+24, 0x1.bd405736bda97p-1, 0x1.2e5f4c17a6e70p-25, 0x1.78f788bcc3d2fp+24},
    {-0x1.436fa653c2bf4p+12, -0x1.c9c6fe94adc87p+6, -0x1.8f4b29f01d8d9p+1, 0x1.4383e50987427p+12},
    {-0x1.a649a8bd9f80ap-7, -0x1.e630be4cb2181p+17, -0x1.921fb6229d0ffp+0, 0x1.e630be4cb218cp+17},
    {-0x1.91dab13f684f2p-2, -0x1.9a2ca9289c5f2p+19, -0x1.921fbd1ab7e44p+0, 0x1.9a2ca9289c905p+19},
    {-0x1.24f42e75335d7p+6, 0x1.f788ffb17d2d9p+18, 0x1.9229044bb2dadp+0, 0x1.f7890006b5599p+18},
    {0x1.f15c1e04b7da7p+20, -0x1.0662bc5226e28p+4, -0x1.0e1bf52472c7ep-17, 0x1.f15c1e04fd10ap+20},
    {-0x1.6f0a7bd201432p+20, 0x1.56e4f8f666f7dp-5, 0x1.921fb50878ac4p+1, 0x1.6f0a7bd201435p+20},
    {-0x1.d836b299f6ceep-3, -0x1.ccf09b3c195aep+6, -0x1.92a2d6abac623p+0, 0x1.ccf0d7b4817a0p+6},
    {0x1.1b81ff2e91055p-3, -0x1.420e4cd057190p+5, -0x1.913e59bda4abfp+0, 0x1.420ec999adf16p+5},
    {-0x1.bbd3994cd855dp+8, 0x1.16e5620e4cb37p+15, 0x1.954e72781bf99p+0, 0x1.16eae695cb86ap+15},
    {0x1.812feb5a57655p+7, 0x1.6aa892e0ef102p-10, 0x1.e20de814b9ad6p-18, 0x1.812feb5a8213ap+7},
    {0x1.2872709323a11p+18, 0x1.b55278fd08875p+18, 0x1.f33d7c3561423p-1, 0x1.082a1c0cc8466p+19},
    {-0x1.51309b950bb88p+2, -0x1.d63767aabac22p+12, -0x1.924d9a266e468p+0, 0x1.d6376f391b589p+12},
    {-0x1.3be8b5116ba4fp-8, -0x1.231293cbf1befp-5, -0x1.b4a4c1d292793p+0, 0x1.25bd2e1ea6fe8p-5},
    {-0x1.3d98bcdf9f23ep-10, -0x1.79a9145648c7cp-5, -0x1.98d9980d791a6p+0, 0x1.79ca7598c206dp-5},
    {-0x1.fdc8b97305a89p+2, -0x1.e0522f7e5b3d8p+21, -0x1.921fd73ac2c71p+0, 0x1.e0522f7e5f77ap+21},
    {0x1.41e2f63fb27a0p-7, -0x1.a4444a2282bedp+1, -0x1.915ba2bac01d2p+0, 0x1.a444c5671277ep+1},
    {-0x1.8fc0a0f8dc498p-8, 0x1.bf17900cd5e41p+25, 0x1.921fb544b543fp+0, 0x1.bf17900cd5e41p+25},
    {-0x1.c90fc4d254313p+3, -0x1.69219770e10dcp-7, -0x1.92066ca55e320p+1, 0x1.c90fcdbd02911p+3},
    {-0x1.075dfd230eaeep-2, 0x1.418d01af53e12p-5, 0x1.7ebd1a5182728p+1, 0x1.0a6aa57a3f7bap-2},
    {-0x1.a48e06d6f86b5p+24, 0x1.2f9947664a293p-9, 0x1.921fb544149dep+1, 0x1.a48e06d6f86b5p+24},
    {0x1.6732a8288a62dp-13, 0x1.8e1cd3c819545p+21, 0x1.921fb54409130p+0, 0x1.8e1cd3c819545p+21},
    {0x1.02647e379f4b5p+15, -0x1.4a7156ba1ef58p+2, -0x1.47620eb87ffaap-13, 0x1.02647e6c71f65p+15},
};

void ExpectTheTables() {
    for (const OfAngle& of : kAngles) {
        EXPECT_EQ(std::sin(of.angle), of.sine) << of.angle;
        EXPECT_EQ(std::cos(of.angle), of.cosine) << of.angle;
        EXPECT_EQ(std::tan(of.angle), of.tangent) << of.angle;
        double sine = 0.0, cosine = 0.0;
        sincos(of.angle, &sine, &cosine);  // what a compiler makes of both of one angle
        EXPECT_EQ(sine, of.sine) << of.angle;
        EXPECT_EQ(cosine, of.cosine) << of.angle;
    }
    for (const OfNumber& of : kNumbers) {
        EXPECT_EQ(std::acos(of.number), of.arcCosine) << of.number;
        EXPECT_EQ(std::asin(of.number), of.arcSine) << of.number;
        EXPECT_EQ(std::atan(of.number), of.arcTangent) << of.number;
    }
    for (const OfTwo& of : kPairs) {
        EXPECT_EQ(std::atan2(of.y, of.x), of.arcTangent) << of.y << ", " << of.x;
        EXPECT_EQ(std::hypot(of.x, of.y), of.hypotenuse) << of.x << ", " << of.y;
    }
}

}  // namespace

TEST(TrigonometryOnWindows, IsGoodToTheLastBit) {
    ExpectTheTables();
}

// A thread of an application that was built by another compiler begins with 53 bits.
TEST(TrigonometryOnWindows, IsTheSameInAThreadOfLessPrecision) {
    std::thread thread([] {
        unsigned short less = 0x27F;
        asm volatile("fldcw %0" : : "m"(less));
        ExpectTheTables();
        unsigned short after = 0;
        asm volatile("fnstcw %0" : "=m"(after));
        EXPECT_EQ(after, less);
    });
    thread.join();
}

TEST(TrigonometryOnWindows, OfNumbersThatAreNoAnglesIsWhatTheStandardSays) {
    for (double (*f)(double) : {static_cast<double (*)(double)>(std::sin), static_cast<double (*)(double)>(std::cos),
                                static_cast<double (*)(double)>(std::tan)}) {
        EXPECT_TRUE(std::isnan(f(kInf)));
        EXPECT_TRUE(std::isnan(f(-kInf)));
        EXPECT_TRUE(std::isnan(f(kNan)));
    }
    EXPECT_TRUE(std::isnan(std::acos(1.0000000000000002)));
    EXPECT_TRUE(std::isnan(std::asin(-1.5)));
    EXPECT_TRUE(std::isnan(std::acos(kNan)));
    EXPECT_TRUE(std::isnan(std::atan2(kNan, 1.0)));
    EXPECT_TRUE(std::signbit(std::sin(-0.0)) && std::signbit(std::asin(-0.0)) && std::signbit(std::atan(-0.0)));
    EXPECT_TRUE(std::signbit(std::tan(-0.0)));
    EXPECT_EQ(std::cos(-0.0), 1.0);
    EXPECT_FALSE(std::signbit(std::acos(1.0)));
    EXPECT_EQ(std::atan2(0.0, -1.0), 3.141592653589793);
    EXPECT_EQ(std::atan2(-0.0, -1.0), -3.141592653589793);
    EXPECT_EQ(std::atan2(kInf, -kInf), 2.356194490192345);
    EXPECT_EQ(std::hypot(-kInf, kNan), kInf);
    EXPECT_EQ(std::hypot(0x1.8p+800, 0x1p+801), 0x1.4p+801);
    EXPECT_EQ(std::hypot(0x1.8p-800, -0x1p-799), 0x1.4p-799);
    EXPECT_EQ(std::hypot(1.7e308, 1.7e308), kInf);
}

// The instruction for one double against the function: the C library's own differs for one number in some thousand.
TEST(SquareRootOnWindows, IsRoundedOnce) {
    double (*volatile root)(double) = std::sqrt;
    zm::test::Random random(31);
    for (int i = 0; i < 200000; ++i) {
        const double x = random.Real(0.0, 1e6);
        ASSERT_EQ(root(x), _mm_cvtsd_f64(_mm_sqrt_pd(_mm_set1_pd(x)))) << x;
    }
    EXPECT_TRUE(std::isnan(root(-1.0)));
    EXPECT_TRUE(std::signbit(root(-0.0)));
    EXPECT_EQ(root(kInf), kInf);
}
