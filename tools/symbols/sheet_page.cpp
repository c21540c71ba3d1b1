#include "tools/symbols/sheet_page.h"

#include <cmath>

#include "runtime/text/markup.h"
#include "runtime/text/numbers.h"

namespace zm::tool::symbols {

namespace {

constexpr char kStyle[] = R"(
:root{--zoom:1}
body{font:14px/1.4 sans-serif;margin:0;color:#222;background:#f4f4f2}
header{position:sticky;top:0;background:#fff;border-bottom:1px solid #ccc;padding:8px 16px;z-index:1}
header h1{font-size:18px;margin:0 16px 0 0;display:inline}
header label{margin-right:16px}
h2{margin:24px 16px 8px;font-size:16px}
main{display:flex;flex-wrap:wrap;gap:8px;padding:8px 16px;align-items:stretch}
figure{margin:0;background:#fff;border:1px solid #ddd;border-radius:4px;padding:8px;display:flex;flex-direction:column;
 justify-content:space-between;min-width:120px}
figure[hidden]{display:none}
.pic{display:flex;align-items:center;justify-content:center;flex:1;min-height:60px}
svg{width:calc(var(--w)*var(--zoom)*1mm);height:calc(var(--h)*var(--zoom)*1mm);overflow:visible}
svg g{fill:none;stroke:#000;stroke-linecap:round;stroke-linejoin:round}
svg g.n circle{fill:#c00;stroke:none}
svg g.n text{font:180px sans-serif;fill:#c00;stroke:none}
svg .o{stroke:#c00;stroke-width:4;fill:none}
figcaption{margin-top:6px;max-width:380px}
figcaption b{margin-right:6px}
.k{background:#e4ebf5;border-radius:3px;padding:0 5px;font-size:12px}
.w{color:#b00020;font-size:12px}
details{font-size:12px;color:#555}
pre{margin:4px 0 0;white-space:pre-wrap;word-break:break-all;max-width:380px}
.m{display:none}
body[data-m="500"] .m500,body[data-m="1000"] .m1000,body[data-m="2000"] .m2000{display:block}
)";

constexpr char kControls[] =
    R"(<label>Filter <input id="f" type="search" placeholder="code, note, kind" size="24"></label>
<label>Enlarged <select id="z"><option value="1">paper size</option><option value="2">2 times</option>
<option value="4">4 times</option><option value="8">8 times</option></select></label>
<label>Map scale of the ornaments <select id="m"><option value="500">1:500</option>
<option value="1000" selected>1:1000</option><option value="2000">1:2000</option></select></label>
<span id="c"></span></header>
)";

constexpr char kScript[] = R"(
const f=document.getElementById('f'),z=document.getElementById('z'),m=document.getElementById('m'),
 c=document.getElementById('c'),all=[...document.querySelectorAll('figure')];
function show(){const words=f.value.toLowerCase().split(/\s+/).filter(w=>w);let n=0;
 for(const e of all){const t=e.dataset.t.split('\n');
  e.hidden=!words.every(w=>t.some(p=>p===w||(p.includes(w)&&!/^\d+$/.test(w))));if(!e.hidden)n++;}
 c.textContent=n+' of '+all.length;}
f.oninput=show;
const zoom=v=>document.documentElement.style.setProperty('--zoom',v);
z.onchange=()=>zoom(z.value);
m.onchange=()=>document.body.dataset.m=m.value;
const q=new URLSearchParams(location.hash.slice(1));
if(q.has('filter'))f.value=q.get('filter');
if(Number(q.get('zoom'))>0){z.value=q.get('zoom');zoom(q.get('zoom'));}
if(q.has('scale')){m.value=q.get('scale');m.onchange();}
show();
)";

std::string Lines(const Symbol& symbol) {
    std::string text = "line " + std::to_string(symbol.firstLine);
    if (symbol.lastLine > symbol.firstLine)
        text = "lines " + std::to_string(symbol.firstLine) + " to " + std::to_string(symbol.lastLine);
    return text;
}

// The length of a line pattern: its strokes, its gaps, and nothing of its marks. 0 for other symbols.
double PeriodOf(const Symbol& symbol) {
    double period = 0.0;
    if (symbol.kind != "LC") return period;
    for (std::size_t i = 1; i < symbol.source.size(); ++i)
        for (const char* at = symbol.source[i].c_str(); *at != '\0'; ++at) {
            const bool first = at == symbol.source[i].c_str() || at[-1] == ' ';
            if (first && (*at == '+' || *at == '-')) period += std::fabs(numbers::ReadReal(at));
        }
    return period;
}

}  // namespace

PageText::PageText(const std::string& title, std::size_t symbols) {
    m_text = "<!DOCTYPE html>\n<html lang=\"zh-CN\"><head><meta charset=\"utf-8\"><title>" + HtmlText(title) +
             "</title><style>" + kStyle + "</style></head>\n<body data-m=\"1000\"><header><h1>" + HtmlText(title) +
             "</h1>" + kControls + "<h2>" + std::to_string(symbols) + " codes</h2>\n<main>\n";
}

void PageText::AddSymbol(const Symbol& symbol, const std::string& svg, const std::string& message) {
    const std::string code = std::to_string(symbol.code);
    m_text += "<figure id=\"c" + code + "\" data-t=\"" + code + "\n" + HtmlText(symbol.note) + "\n";
    for (const char c : symbol.kind) m_text += static_cast<char>(c | 0x20);
    m_text += "\"><div class=\"pic\">" + svg + "</div><figcaption><b>" + code + "</b><span class=\"k\">" + symbol.kind +
              "</span> " + HtmlText(symbol.note);
    if (symbol.kind == "G") m_text += numbers::Text(" <small>%.1f mm</small>", symbol.size);
    if (const double period = PeriodOf(symbol); period > 0.0)
        m_text += numbers::Text(" <small>every %.1f mm</small>", period);
    if (m_penWidth > 0.0) m_text += numbers::Text(" <small>line %.2f mm</small>", m_penWidth);
    if (!message.empty()) m_text += "<div class=\"w\">" + HtmlText(message) + "</div>";
    m_text += "<details><summary>" + Lines(symbol) + "</summary><pre>";
    for (const std::string& line : symbol.source) m_text += HtmlText(line) + "\n";
    m_text += "</pre></details></figcaption></figure>\n";
}

void PageText::BeginOrnaments() {
    m_text += "</main>\n<h2>39 ornaments, control points numbered</h2>\n<main>\n";
}

void PageText::AddOrnament(int number, const std::string& name, bool draws, const std::string& pictures) {
    const std::string text = std::to_string(number);
    m_text += "<figure id=\"y" + text + "\" data-t=\"ornament\n" + text + "\n" + HtmlText(name) +
              "\"><div class=\"pic\">" + pictures + "</div><figcaption><b>" + text +
              "</b><span class=\"k\">ornament</span> " + HtmlText(name);
    if (!draws) m_text += "draws nothing";
    m_text += "</figcaption></figure>\n";
}

std::string PageText::Finish() {
    m_text += "</main>\n<script>";
    m_text += kScript;
    m_text += "</script></body></html>\n";
    return std::move(m_text);
}

}  // namespace zm::tool::symbols
