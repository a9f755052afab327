<?xml version="1.0" encoding="UTF-8"?>
<!-- What resources/stylesheets/html.xsl does, for the XML of dcm2xml: for scripts/bench_header.sh. The
     head of the page with its cards, and the styles, are those of that stylesheet: its keys find what
     they need by these. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:import href="../resources/stylesheets/html.xsl"/>
  <xsl:output method="html" encoding="UTF-8" indent="no" doctype-system="about:legacy-compat"/>

  <xsl:key name="group" match="/file-format/*/*" use="substring(@tag, 1, 4)"/>
  <xsl:key name="top" match="/file-format/*/*" use="translate(@tag, ',', '')"/>

  <xsl:variable name="firstOfGroups"
                select="/file-format/*/*[substring(@tag, 1, 4) !=
                                         substring(preceding-sibling::*[1]/@tag, 1, 4)]"/>

  <xsl:template match="/">
    <html lang="en">
      <head>
        <title>
          <xsl:value-of select="$patientName"/>
          <xsl:if test="$patientName = ''">DICOM header</xsl:if>
          <xsl:call-template name="titlePart">
            <xsl:with-param name="text" select="key('top', '00080060')"/>
          </xsl:call-template>
          <xsl:call-template name="titlePart">
            <xsl:with-param name="text" select="$studyDate"/>
          </xsl:call-template>
        </title>
        <meta name="viewport" content="width=device-width, initial-scale=1"/>
        <style>
          <xsl:call-template name="styles"/>
        </style>
      </head>
      <body>
        <xsl:call-template name="summary"/>
        <nav>
          <xsl:for-each select="$firstOfGroups">
            <a href="#g{substring(@tag, 1, 4)}">
              <xsl:call-template name="groupName">
                <xsl:with-param name="grp" select="substring(@tag, 1, 4)"/>
              </xsl:call-template>
            </a>
            <xsl:value-of select="' '"/>
          </xsl:for-each>
        </nav>
        <xsl:for-each select="$firstOfGroups">
          <xsl:variable name="grp" select="substring(@tag, 1, 4)"/>
          <section id="g{$grp}">
            <h2>
              <xsl:call-template name="groupName">
                <xsl:with-param name="grp" select="$grp"/>
              </xsl:call-template>
              <xsl:value-of select="' '"/>
              <span class="grp"><xsl:value-of select="$grp"/></span>
            </h2>
            <xsl:call-template name="table">
              <xsl:with-param name="tags" select="key('group', $grp)"/>
            </xsl:call-template>
          </section>
        </xsl:for-each>
      </body>
    </html>
  </xsl:template>

  <xsl:template match="element">
    <tr>
      <td class="tag"><xsl:value-of select="concat('(', @tag, ')')"/></td>
      <td class="name"><xsl:call-template name="words"/></td>
      <td class="vr"><xsl:value-of select="@vr"/></td>
      <td class="value"><xsl:value-of select="."/></td>
    </tr>
  </xsl:template>

  <xsl:template match="sequence">
    <tr>
      <xsl:choose>
        <xsl:when test="item">
          <td class="sequence" colspan="4">
            <details open="open">
              <summary>
                <span class="tag"><xsl:value-of select="concat('(', @tag, ')')"/></span>
                <xsl:value-of select="' '"/>
                <xsl:call-template name="words"/>
                <xsl:value-of select="' '"/>
                <span class="vr">
                  <xsl:value-of select="concat('SQ, ', count(item), ' item')"/>
                  <xsl:if test="count(item) != 1">s</xsl:if>
                </span>
              </summary>
              <xsl:for-each select="item">
                <div class="item">
                  <h3><xsl:value-of select="concat('Item ', position())"/></h3>
                  <table>
                    <tbody>
                      <xsl:apply-templates select="*"/>
                    </tbody>
                  </table>
                </div>
              </xsl:for-each>
            </details>
          </td>
        </xsl:when>
        <xsl:otherwise>
          <td class="tag"><xsl:value-of select="concat('(', @tag, ')')"/></td>
          <td class="name"><xsl:call-template name="words"/></td>
          <td class="vr">SQ</td>
          <td class="value none">no items</td>
        </xsl:otherwise>
      </xsl:choose>
    </tr>
  </xsl:template>

  <!-- The name in words: StudyInstanceUID as Study Instance UID. -->
  <xsl:template name="words">
    <xsl:choose>
      <xsl:when test="starts-with(@name, 'Unknown Tag')">
        <span class="none">
          <xsl:choose>
            <xsl:when test="contains('13579bdf', substring(@tag, 4, 1))">private</xsl:when>
            <xsl:otherwise>unknown</xsl:otherwise>
          </xsl:choose>
        </span>
      </xsl:when>
      <xsl:otherwise>
        <xsl:call-template name="moreWords">
          <xsl:with-param name="rest" select="string(@name)"/>
        </xsl:call-template>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <!-- A space before each capital letter that begins a word; all of a short form begin one. -->
  <xsl:template name="moreWords">
    <xsl:param name="rest"/>
    <xsl:variable name="form"
                  select="substring-before(concat(translate($rest, $lower,
                                                            '^^^^^^^^^^^^^^^^^^^^^^^^^^'), '^'), '^')"/>
    <xsl:variable name="capitals"
                  select="string-length($form) - (string-length($form) > 1 and
                                                  string-length($form) != string-length($rest))"/>
    <xsl:variable name="tail" select="substring($rest, $capitals + 1)"/>
    <xsl:variable name="small"
                  select="substring-before(concat(translate($tail, $upper,
                                                            '^^^^^^^^^^^^^^^^^^^^^^^^^^'), '^'), '^')"/>
    <xsl:value-of select="concat(substring($rest, 1, $capitals), $small)"/>
    <xsl:variable name="next" select="substring($tail, string-length($small) + 1)"/>
    <xsl:if test="$next != ''">
      <xsl:value-of select="' '"/>
      <xsl:call-template name="moreWords">
        <xsl:with-param name="rest" select="$next"/>
      </xsl:call-template>
    </xsl:if>
  </xsl:template>
</xsl:stylesheet>
