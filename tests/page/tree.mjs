// Pages as trees that can be compared: an element is {name, attributes, children}, a text a string.

import { parse } from "parse5";

/// The tree of a page, and what its parser calls an error.
export function parsed(html) {
  const errors = [];
  const document = parse(html, {
    onParseError: ({ code, startLine, startCol }) => errors.push(`${startLine}:${startCol}: ${code}`),
  });
  return { tree: treeOf(document.childNodes.find((node) => node.nodeName === "html")), errors };
}

function treeOf(node) {
  const children = [];
  for (const child of node.childNodes) {
    if (child.nodeName === "#text") {
      children.push(child.value);
    } else if (child.nodeName === "#comment") {
      children.push({ name: "#comment", attributes: {}, children: [child.data] });
    } else {
      children.push(treeOf(child));
    }
  }
  return {
    name: node.nodeName,
    attributes: Object.fromEntries(node.attrs.map(({ name, value }) => [name, value])),
    children,
  };
}

/// The same of a page in a browser; runs there.
export function treeInBrowser() {
  const treeOfElement = (element) => {
    const children = [];
    for (const node of element.childNodes) {
      if (node.nodeType !== Node.TEXT_NODE) {
        children.push(node.nodeType === Node.COMMENT_NODE
          ? { name: "#comment", attributes: {}, children: [node.data] } : treeOfElement(node));
      } else if (typeof children.at(-1) === "string") {
        children[children.length - 1] += node.data; // long texts come in several nodes
      } else {
        children.push(node.data);
      }
    }
    return {
      name: element.localName,
      attributes: Object.fromEntries([...element.attributes].map(({ name, value }) => [name, value])),
      children,
    };
  };
  return treeOfElement(document.documentElement);
}

export const hasClass = (element, name) => (element.attributes?.class ?? "").split(" ").includes(name);

export function* elementsOf(tree) {
  if (typeof tree === "string") return;
  yield tree;
  for (const child of tree.children) yield* elementsOf(child);
}

export const withClass = (tree, name) => [...elementsOf(tree)].filter((element) => hasClass(element, name));

export const textOf = (tree) => (typeof tree === "string" ? tree : tree.children.map(textOf).join(""));
