// Texts that a page would show wrongly, or that would get out of their place, if one character of them
// were not escaped. None is a valid value of any kind of control, so that each of them is only a text.

const long = 2000;

const groups = {
  "elements": [
    "<script>document.title='ran'</script>", "<SCRIPT SRC=//x.invalid/a.js></SCRIPT>", "</script>",
    "<script", "<script/x>1</script>", "<scr<script>ipt>1</scr</script>ipt>",
    "<img src=x onerror=document.title='ran'>", "<img/src='x'/onerror=1>", "<image href=x>",
    "<svg onload=document.title='ran'>", "<svg><script>1</script></svg>", "<svg/onload=1//",
    "<svg><style><img src=x onerror=1></style></svg>", "<math><mtext><mglyph><style></math><img src onerror=1>",
    "<iframe src=javascript:1></iframe>", "<iframe srcdoc='<b>1</b>'>", "<object width=1></object>", "<embed src=x>",
    "<link rel=stylesheet href=//x.invalid/a.css>", "<base href=//x.invalid/>",
    "<meta http-equiv=refresh content='0;url=//x.invalid'>", "<meta charset=utf-7>",
    "<form action=//x.invalid><button>go</button></form>", "<input autofocus onfocus=1>", "<button formaction=x>",
    "<a href='javascript:1'>a</a>", "<a name=d1>", "<b>bold", "</b>", "<p>", "</p>", "<br>", "</br>", "<hr/>", "<div", "</div>",
    "</div></div></section></main></body></html>", "<body onload=1>", "<html lang=xx>", "<head>", "<frameset>",
    "<table><tr><td>", "</td></tr></table>", "<table><b>1</table>", "<tr>", "<li>", "</ul>", "<dl><dt>",
    "<details open ontoggle=1>", "</details>", "</summary>", "<summary>", "<select><option>", "</option></select>", "<option>",
    "<optgroup id=x>", "<label for=d1-c1>", "</label>", "<fieldset disabled>", "<dialog open>", "<marquee>", "<plaintext>",
    "<xmp>", "</xmp>", "<listing>", "<noscript>", "</noscript>", "<noembed>", "<template>", "</template>", "<slot name=x>",
    "<custom-element>", "<x:y>", "<video><source onerror=1>", "<isindex>", "<keygen>", "<a\u00a0b>", "< b>", "<>", "</>", "</ p>", "<1>",
  ],
  "ends of what the text stands in": [
    "</title>", "</title><script>1</script>", "</TITLE >", "</style>", "</style><script>1</script>", "</STYLE\t>", "</code>", "</code></pre>",
    "</pre>", "</h1>", "</bdi>", "</span></span>", "</textarea>", "<textarea>", "</a>", "</nav>", "</header>", "</ol>",
  ],
  "comments and declarations": [
    "<!--", "-->", "--!>", "<!-- x -->", "<!--><script>1</script>", "<!-->", "<!--->", "<!- x ->", "<!DOCTYPE html>", "<!ELEMENT x>", "<!>",
    "<![CDATA[ x ]]>", "]]>", "<?xml version='1.0'?>", "<?php echo 1 ?>", "<%= 1 %>", "<!--[if IE]><p><![endif]-->",
  ],
  "attributes": [
    '"', "'", "`", '""', "''", '" onfocus="1', "' onfocus='1", '"><b>', "'><b>", "\"'><img src=x onerror=1>", '" autofocus onfocus=1 x="',
    '" style="position:fixed', "' disabled '", '" id="d1', "x=y", "= ", "/>", ">", '">', "`onload=1", "a b", " ", "  two  spaces  ", '" hidden="',
    '" aria-hidden="true', "\" lang=\"xx", "on\"click='1'",
  ],
  "character references": [
    "&", "&&", "&amp;", "&amp;amp;", "&lt;b&gt;", "&lt", "&LT;b&GT;", "&quot;", "&#34;", "&#39;", "&apos;", "&#60;b&#62;", "&#x3c;b&#x3e;", "&#x3Cb",
    "&#0;", "&#x0;", "&#xD800;", "&#x110000;", "&#99999999999;", "&#", "&#x", "&;", "&nosuch;", "&notit;", "&not=1", "&copy", "&copy=1", "&nbsp;",
    "a&b=c&lt=d", "&lang=en", "&NotEqualTilde;", "&CounterClockwiseContourIntegral;", "&#128;", "&#x202e;", "AT&T",
  ],
  "style": [
    "body{display:none}", "}*{display:none}", "/*", "*/", "@import '//x.invalid/a.css';", "url(//x.invalid/a.png)", "expression(alert(1))",
    "\\3c b\\3e", "red;background:url(//x.invalid)", "--x:</style>", "fill:#000000;", "100%;x:y",
  ],
  "scripts, templates, addresses": [
    "javascript:alert(1)", "java\tscript:alert(1)", "JaVaScRiPt:1", "url(data:text/html,<script>1</script>)", "vbscript:1", "file:///etc/hosts",
    "//x.invalid/", "https://x.invalid/?a=1&b=2", "#d1-c1", "{{7*7}}", "${7*7}", "#{7*7}", "<%7*7%>", "{%x%}", "[[x]]", "%s%n%x", "%3Cb%3E", "%00",
    "\\", "\\\\", "\\n", "\\u003cb\\u003e", "\\x3cb\\x3e", "\\\"", "'; DROP TABLE t; --", "$(id)", "`id`", "../../x", "C:\\dir\\x", "~0~1/", "/a/b", "__proto__",
    "constructor", "null", "undefined", "NaN", "-Infinity", "[object Object]",
  ],
  "control characters": [
    "\0", "a\0b", "<scr\0ipt>", "&\0amp;", "\x01\x02\x03", "\x07bell", "\b", "\t", "\ttab\tbed", "\v", "\f", "\x1b[31mred\x1b[0m", "\x1b]0;title\x07", "\x7f",
    "\x80\x9f", "\x85", "\x91quoted\x92", "\x9b31m",
  ],
  "lines": [
    "\n", "\nfirst is empty", "last is empty\n", "two\nlines", "\r", "a\rb", "a\r\nb", "\n\n\n", "\u2028", "a\u2029b", "\n<pre>\n", " \n ",
  ],
  "directions": [
    "\u202e", "\u202eevil\u202c", "a\u202db", "\u202aembed\u202c", "\u202bembed\u202c", "\u2066\u2067\u2068isolate\u2069", "\u2069\u2069\u2069", "\u200e\u200f\u061c",
    "שלום", "שלום abc (1) עולם", "مرحبا بالعالم", "abc مرحبا <b>", "\u202e<b>\u202c",
  ],
  "what is not seen": [
    "\u200b", "a\u200bb", "\ufeff", "\ufeffmark first", "\u00ad", "\u00a0", "\u2003", "\u3000", "\u115f\u3164", "\u2060\u2064", "\u{e0041}\u{e007f}", "\ufe0f", "\ufff9a\ufffab\ufffb",
  ],
  "what is no character": [
    "\ufdd0", "\ufdef", "\ufffe", "\uffff", "a\uffffb", "\u{1fffe}\u{1ffff}", "\u{10fffe}\u{10ffff}", "\ud800", "\udfff", "a\ud800b", "\udc00\ud800", "\ud83d", "\ud83d<b>",
    "<\ud800b>", "\ufffd", "\ue000\u{f0000}\u{10fffd}",
  ],
  "combining and composed": [
    "e\u0301", "\u0301", "Z\u0351\u036b\u0343\u0369\u034b" + "\u0489".repeat(40), "क्षि", "नि", "กำ", "각", "👩‍👩‍👧‍👦", "🏴\u{e0067}\u{e0062}\u{e007f}", "👍🏽", "🇩🇪", "i\u0307İı",
    "ﬃ", "ß", "ſ", "ａｂｃ＜ｂ＞", "‹b›", "\u226e", "<\u0338b>", ">\u0338", '"\u0308', "&\u20dd",
  ],
  "long": [
    "x".repeat(long), "<".repeat(long / 10), "&".repeat(long / 10), '"'.repeat(long / 10), "<b>".repeat(long / 10), "\u202e".repeat(long / 10), "😀".repeat(long / 10),
    "a ".repeat(long / 10), "e" + "\u0301".repeat(long / 10), "ש".repeat(long / 10), "\n".repeat(200), "</div>".repeat(200),
  ],
};

export const payloads = Object.values(groups).flat();

/// The texts in parts that one page holds.
export function* batches(size = 20) {
  for (const [group, texts] of Object.entries(groups)) {
    for (let begin = 0; begin < texts.length; begin += size) {
      const part = texts.slice(begin, begin + size);
      yield { names: `${group}, ${begin + 1} to ${begin + part.length}`, texts: part };
    }
  }
}
