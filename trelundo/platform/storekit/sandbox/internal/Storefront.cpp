#include "trelundo/platform/storekit/sandbox/internal/Storefront.h"

#include <optional>

namespace trelundo {

namespace {

// Alpha-3 and alpha-2 codes, five letters and a blank each.
constexpr std::string_view regions =
    "ABWAW AFGAF AGOAO AIAAI ALAAX ALBAL ANDAD AREAE ARGAR ARMAM ASMAS ATAAQ ATFTF ATGAG AUSAU "
    "AUTAT AZEAZ BDIBI BELBE BENBJ BESBQ BFABF BGDBD BGRBG BHRBH BHSBS BIHBA BLMBL BLRBY BLZBZ "
    "BMUBM BOLBO BRABR BRBBB BRNBN BTNBT BVTBV BWABW CAFCF CANCA CCKCC CHECH CHLCL CHNCN CIVCI "
    "CMRCM CODCD COGCG COKCK COLCO COMKM CPVCV CRICR CUBCU CUWCW CXRCX CYMKY CYPCY CZECZ DEUDE "
    "DGADG DJIDJ DMADM DNKDK DOMDO DZADZ ECUEC EGYEG ERIER ESHEH ESPES ESTEE ETHET FINFI FJIFJ "
    "FLKFK FRAFR FROFO FSMFM GABGA GBRGB GEOGE GGYGG GHAGH GIBGI GINGN GLPGP GMBGM GNBGW GNQGQ "
    "GRCGR GRDGD GRLGL GTMGT GUFGF GUMGU GUYGY HKGHK HMDHM HNDHN HRVHR HTIHT HUNHU IDNID IMNIM "
    "INDIN IOTIO IRLIE IRNIR IRQIQ ISLIS ISRIL ITAIT JAMJM JEYJE JORJO JPNJP KAZKZ KENKE KGZKG "
    "KHMKH KIRKI KNAKN KORKR KWTKW LAOLA LBNLB LBRLR LBYLY LCALC LIELI LKALK LSOLS LTULT LUXLU "
    "LVALV MACMO MAFMF MARMA MCOMC MDAMD MDGMG MDVMV MEXMX MHLMH MKDMK MLIML MLTMT MMRMM MNEME "
    "MNGMN MNPMP MOZMZ MRTMR MSRMS MTQMQ MUSMU MWIMW MYSMY MYTYT NAMNA NCLNC NERNE NFKNF NGANG "
    "NICNI NIUNU NLDNL NORNO NPLNP NRUNR NZLNZ OMNOM PAKPK PANPA PCNPN PERPE PHLPH PLWPW PNGPG "
    "POLPL PRIPR PRKKP PRTPT PRYPY PSEPS PYFPF QATQA REURE ROURO RUSRU RWARW SAUSA SDNSD SENSN "
    "SGPSG SGSGS SHNSH SJMSJ SLBSB SLESL SLVSV SMRSM SOMSO SPMPM SRBRS SSDSS STPST SURSR SVKSK "
    "SVNSI SWESE SWZSZ SXMSX SYCSC SYRSY TCATC TCDTD TGOTG THATH TJKTJ TKLTK TKMTM TLSTL TONTO "
    "TTOTT TUNTN TURTR TUVTV TWNTW TZATZ UGAUG UKRUA UMIUM URYUY USAUS UZBUZ VATVA VCTVC VENVE "
    "VGBVG VIRVI VNMVN VUTVU WLFWF WSMWS XEAEA XICIC XKKXK XKSXK YEMYE ZAFZA ZMBZM ZWEZW ";

// Alpha-3 codes and their own currencies; every other storefront sells in US dollars.
constexpr std::string_view currencies =
    "AREAED AUSAUD AUTEUR BELEUR BGREUR BIHEUR BRABRL CANCAD CHECHF CHLCLP CHNCNY COLCOP "
    "CYPEUR CZECZK DEUEUR DNKDKK EGYEGP ESPEUR ESTEUR FINEUR FRAEUR GBRGBP GRCEUR HKGHKD "
    "HRVEUR HUNHUF IDNIDR INDINR IRLEUR ISRILS ITAEUR JPNJPY KAZKZT KORKRW LTUEUR LUXEUR "
    "LVAEUR MEXMXN MLTEUR MNEEUR MYSMYR NGANGN NLDEUR NORNOK NZLNZD PAKPKR PERPEN PHLPHP "
    "POLPLN PRTEUR QATQAR ROURON RUSRUB SAUSAR SGPSGD SRBEUR SVKEUR SVNEUR SWESEK THATHB "
    "TURTRY TWNTWD TZATZS VNMVND ZAFZAR ";

/// What stands beside `code` in a table whose entries are `width` letters and a blank long.
std::optional<std::string_view> lookUp(std::string_view table, std::string_view code, std::size_t width) {
    for (std::size_t at = 0; code.size() == 3 && at < table.size(); at += width + 1) {
        if (table.substr(at, 3) == code) return table.substr(at + 3, width - 3);
    }
    return std::nullopt;
}

/// The language of a locale with its script: `zh_Hans` of `zh_Hans_CN`, `en` of `en_US`.
std::string languageAndScript(std::string_view locale) {
    auto const isSeparator = [](char c) { return c == '_' || c == '-' || c == '@' || c == '.'; };
    auto const length = [&](std::size_t from) {
        std::size_t end = from;
        while (end < locale.size() && !isSeparator(locale[end])) ++end;
        return end - from;
    };
    auto const language = length(0);
    std::string result{locale.substr(0, language)};
    if (language + 1 < locale.size() && length(language + 1) == 4)
        result.append("_").append(locale.substr(language + 1, 4));
    return result;
}

} // namespace

Result<Storefront> Storefront::find(std::string_view code) {
    auto const region = lookUp(regions, code, 5);
    if (!region) return Error{"unknown storefront \"" + std::string{code} + "\""};
    return Storefront{.code = std::string{code},
                      .region = std::string{*region},
                      .currency = std::string{lookUp(currencies, code, 6).value_or("USD")}};
}

std::string Storefront::priceLocale(std::string_view locale) const {
    return languageAndScript(locale) + "_" + region + "@currency=" + currency;
}

} // namespace trelundo
