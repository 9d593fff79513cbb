# How Sphinx makes the pages; tools/docs calls it.
from sphinx import addnodes

project = "qvObjects"
author = "the developers of qvObjects"
copyright = author
extensions = ["myst_parser", "sphinxcontrib.htmlhelp"]
myst_heading_anchors = 3
html_theme = "furo"
html_static_path = ["_static"]
html_css_files = ["pages.css"]
html_title = "qvObjects"
html_show_sourcelink = False
html_show_sphinx = False
html_copy_source = False
htmlhelp_basename = "qvObjects"
suppress_warnings = ["myst.header"]
highlight_language = "none"


def near_pages_only(app, page, template, context, doctree):
    """The tree of contents beside a page has the members of its own class alone: all of them on every page took most of the time."""
    whole = context.get("toctree")
    if whole:
        context["toctree"] = lambda **options: whole(**{**options, "collapse": True})


def setup(app):
    app.connect("html-page-context", near_pages_only, priority=400)

    # The help viewer's browser is an old one; its contents are to lead to every page.
    def for_the_viewer(app, config):
        if app.tags.has("htmlhelp"):
            config.html_theme = "classic"
            config.templates_path = ["_help"]
            app.connect("env-updated", with_hidden_contents)
    app.connect("config-inited", for_the_viewer)


def with_hidden_contents(app, environment):
    for page, contents in environment.tocs.items():
        for node in contents.findall(addnodes.toctree):
            node["hidden"] = False
        is_member = page.count("/") == 2 and not page.endswith("/index")
        if is_member:
            del contents[0][1:]  # its headings, which are the same on every page
