<?xml version="1.0" encoding="UTF-8"?>
<!-- What resources/stylesheets/text.xsl does, for the XML of dcm2xml: for scripts/bench_header.sh. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output method="text" encoding="UTF-8"/>
  <xsl:variable name="newline" select="'&#10;'"/>
  <xsl:variable name="spaces"
                select="'                                                                '"/>

  <xsl:template match="/">
    <xsl:apply-templates select="file-format/*/*"/>
  </xsl:template>

  <xsl:template match="element | sequence">
    <xsl:param name="indent" select="''"/>
    <xsl:if test="$indent = '' and
                  substring(@tag, 1, 4) != substring(preceding-sibling::*[1]/@tag, 1, 4)">
      <xsl:value-of select="$newline"/>
    </xsl:if>
    <xsl:variable name="left" select="concat($indent, '(', @tag, ') ', @vr, ' ', @name)"/>
    <xsl:variable name="gap"
                  select="concat(substring($spaces, 1, 48 - string-length($left)), '  ')"/>
    <xsl:choose>
      <xsl:when test="self::sequence">
        <xsl:value-of select="concat($left, $gap, count(item), ' items', $newline)"/>
        <xsl:for-each select="item">
          <xsl:value-of select="concat($indent, '- item ', position(), $newline)"/>
          <xsl:apply-templates select="*">
            <xsl:with-param name="indent" select="concat($indent, '  ')"/>
          </xsl:apply-templates>
        </xsl:for-each>
      </xsl:when>
      <xsl:otherwise>
        <xsl:value-of select="concat($left, $gap, ., $newline)"/>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>
</xsl:stylesheet>
